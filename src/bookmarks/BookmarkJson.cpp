#include "bookmarks/BookmarkJson.h"

#include <stdexcept>

#include <nlohmann/json.hpp>

#include "search/DateJson.h"
#include "search/IntegerJson.h"
#include "search/SearchFilterJson.h"

namespace zelnor {

namespace {

using Json = nlohmann::ordered_json;

Uuid uuidFrom(const Json& json) {
  const auto id = Uuid::parse(json.get_ref<const std::string&>());
  if (!id) throw std::invalid_argument("malformed UUID");
  return *id;
}

}  // namespace

void to_json(Json& json, const SearchBookmark& bookmark) {
  json = Json::object();
  json["id"] = bookmark.id.text();
  json["name"] = bookmark.name;
  json["query"] = bookmark.query;
  json["filter"] = bookmark.filter;
  json["categoryID"] = bookmark.categoryID.text();
  json["createdAt"] = bookmark.createdAt;
  json["sortOrder"] = bookmark.sortOrder;
}

void to_json(Json& json, const BookmarkCategory& category) {
  json = Json::object();
  json["id"] = category.id.text();
  json["name"] = category.name;
  json["sortOrder"] = category.sortOrder;
}

void from_json(const Json& json, SearchBookmark& bookmark) {
  bookmark.id = uuidFrom(json.at("id"));
  json.at("name").get_to(bookmark.name);
  json.at("query").get_to(bookmark.query);
  json.at("filter").get_to(bookmark.filter);
  bookmark.categoryID = uuidFrom(json.at("categoryID"));
  json.at("createdAt").get_to(bookmark.createdAt);
  bookmark.sortOrder = integerFrom(json.at("sortOrder"));
}

void from_json(const Json& json, BookmarkCategory& category) {
  category.id = uuidFrom(json.at("id"));
  json.at("name").get_to(category.name);
  category.sortOrder = integerFrom(json.at("sortOrder"));
}

}  // namespace zelnor
