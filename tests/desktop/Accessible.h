#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <atspi/atspi.h>

#include <QRect>

namespace zelnor::test {

/// Something that the program shows, as a screen reader finds it (AT-SPI).
class Accessible {
 public:
  /// What is on the screen, called `name` or beginning so, in windows of the program.
  static std::optional<Accessible> named(const std::string& name);
  /// The names of everything that is on the screen, in the order of the windows' contents.
  static std::vector<std::string> names();

  [[nodiscard]] std::string name() const;
  /// Of what is written in it.
  [[nodiscard]] std::string text() const;
  /// On the screen.
  [[nodiscard]] QRect box() const;
  /// Whether it shows that it is switched on.
  [[nodiscard]] bool isChecked() const;
  /// Whether keys go to it.
  [[nodiscard]] bool isFocused() const;

 private:
  using Pointer = std::shared_ptr<AtspiAccessible>;

  explicit Accessible(Pointer object) : object_(std::move(object)) {}

  static std::vector<Accessible> all();
  static std::vector<Accessible> childrenOf(AtspiAccessible* object);
  static void collect(const Accessible& object, std::vector<Accessible>& found);
  [[nodiscard]] bool has(AtspiStateType state) const;

  Pointer object_;
};

}  // namespace zelnor::test
