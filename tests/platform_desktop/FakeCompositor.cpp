#include "tests/platform_desktop/FakeCompositor.h"

#include <sys/socket.h>

#include <array>
#include <stdexcept>

// Of the client's side only the core, because its protocol has functions of the same names.
#include <wayland-client-core.h>
#include <wayland-server.h>
#include <xdg-activation-v1-server.h>

namespace zelnor::test {

struct FakeCompositor::Requests {
  static FakeCompositor& compositor(wl_resource* resource) {
    return *static_cast<FakeCompositor*>(wl_resource_get_user_data(resource));
  }
  static void destroy(wl_client* /*client*/, wl_resource* resource) {
    wl_resource_destroy(resource);
  }
  static void forget(wl_resource* token) { std::erase(compositor(token).tokens_, token); }
  static void getToken(wl_client* client, wl_resource* resource, std::uint32_t id) {
    auto* const token =
        wl_resource_create(client, &xdg_activation_token_v1_interface, /*version=*/1, id);
    wl_resource_set_implementation(token, &kToken, &compositor(resource), forget);
  }
  static void commit(wl_client* /*client*/, wl_resource* token) {
    compositor(token).tokens_.push_back(token);
  }
  static void bind(wl_client* client, void* self, std::uint32_t version, std::uint32_t id) {
    auto* const resource =
        wl_resource_create(client, &xdg_activation_v1_interface, static_cast<int>(version), id);
    wl_resource_set_implementation(resource, &kActivation, self, /*destroy=*/nullptr);
  }

  static const struct xdg_activation_v1_interface kActivation;
  static const struct xdg_activation_token_v1_interface kToken;
};

const struct xdg_activation_v1_interface FakeCompositor::Requests::kActivation{
    .destroy = destroy,
    .get_activation_token = getToken,
    .activate = [](wl_client*, wl_resource*, const char*, wl_resource*) {}};
const struct xdg_activation_token_v1_interface FakeCompositor::Requests::kToken{
    .set_serial = [](wl_client*, wl_resource*, std::uint32_t, wl_resource*) {},
    .set_app_id = [](wl_client*, wl_resource*, const char*) {},
    .set_surface = [](wl_client*, wl_resource*, wl_resource*) {},
    .commit = commit,
    .destroy = destroy};

FakeCompositor::FakeCompositor() : server_(wl_display_create()) {
  std::array<int, 2> ends{};
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, /*protocol=*/0,
                 ends.data()) != 0) {
    throw std::runtime_error("socketpair");
  }
  wl_client_create(server_, ends[0]);
  client_ = wl_display_connect_to_fd(ends[1]);
}

FakeCompositor::~FakeCompositor() {
  wl_display_disconnect(client_);
  wl_display_destroy_clients(server_);
  wl_display_destroy(server_);
}

void FakeCompositor::announceActivation() {
  activation_ =
      wl_global_create(server_, &xdg_activation_v1_interface, /*version=*/1, this, Requests::bind);
}

void FakeCompositor::withdrawActivation() { wl_global_remove(activation_); }

void FakeCompositor::exchange() {
  constexpr int kRounds = 4;  // a request, its answer, and what either side does about it
  for (int round = 0; round < kRounds; ++round) {
    wl_display_flush(client_);
    wl_event_loop_dispatch(wl_display_get_event_loop(server_), /*timeout=*/0);
    wl_display_flush_clients(server_);
    if (wl_display_prepare_read(client_) == 0) wl_display_read_events(client_);
    wl_display_dispatch_pending(client_);
  }
}

void FakeCompositor::grant(std::size_t at, const std::string& token) {
  xdg_activation_token_v1_send_done(tokens_.at(at), token.c_str());
}

}  // namespace zelnor::test
