#include <array>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include <QApplication>

namespace {

/// The one application of the test program; it draws where nobody looks. Qt wants it gone before
/// static objects go.
class OffscreenApplication final : public testing::Environment {
 public:
  void SetUp() override {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    application_ = std::make_unique<QApplication>(argc_, argv_.data());
  }
  void TearDown() override { application_.reset(); }

 private:
  int argc_ = 1;
  std::string name_ = "test";
  std::array<char*, 2> argv_{name_.data(), nullptr};
  std::unique_ptr<QApplication> application_;
};

// NOLINTNEXTLINE(cppcoreguidelines-owning-memory): GoogleTest takes it over
const auto* const environment = testing::AddGlobalTestEnvironment(new OffscreenApplication);

}  // namespace
