#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

struct wl_client;
struct wl_display;
struct wl_global;
struct wl_resource;

namespace zelnor::test {

/// A Wayland compositor that has nothing but xdg-activation, with one client, both in the thread of
/// the test.
class FakeCompositor {
 public:
  FakeCompositor();
  FakeCompositor(const FakeCompositor&) = delete;
  FakeCompositor& operator=(const FakeCompositor&) = delete;
  ~FakeCompositor();

  /// Belongs to the compositor; to be let go of before it.
  [[nodiscard]] wl_display* client() const { return client_; }
  void announceActivation();
  void withdrawActivation();

  /// Lets both sides handle what the other one sent.
  void exchange();

  /// How many tokens were asked for whose objects the client still has.
  [[nodiscard]] std::size_t tokens() const { return tokens_.size(); }
  /// Answers the one that was asked for at this place.
  void grant(std::size_t at, const std::string& token);

 private:
  struct Requests;

  wl_display* server_;
  wl_display* client_ = nullptr;
  wl_global* activation_ = nullptr;
  std::vector<wl_resource*> tokens_;
};

}  // namespace zelnor::test
