#include "bookmarks/Uuid.h"

#include <algorithm>
#include <memory>

#include <glib.h>

namespace zelnor {

namespace {

constexpr std::size_t kLength = 36;

std::string upperCase(std::string text) {
  std::ranges::transform(text, text.begin(), g_ascii_toupper);
  return text;
}

}  // namespace

Uuid Uuid::random() {
  const std::unique_ptr<gchar, decltype(&g_free)> text(g_uuid_string_random(), g_free);
  return Uuid(upperCase(text.get()));
}

std::optional<Uuid> Uuid::parse(std::string_view text) {
  const std::string terminated(text);
  // Without the length a NUL could end it early.
  if (text.size() != kLength || g_uuid_string_is_valid(terminated.c_str()) == FALSE) return {};
  return Uuid(upperCase(terminated));
}

}  // namespace zelnor
