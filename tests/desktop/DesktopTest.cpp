#include "tests/desktop/DesktopTest.h"

#include <signal.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace zelnor::test {

namespace {

constexpr const char* kSearchField = "搜索文件、文件夹...";
constexpr int kEndingPatience = 5000;  // ms; a second for the program, the rest for a busy machine

}  // namespace

DesktopTest::DesktopTest() = default;

DesktopTest::~DesktopTest() {
  if (!program_) return;
  program_->kill();
  program_->waitForFinished();
}

void DesktopTest::TearDown() {
  if (!HasFailure()) return;
  const auto* info = testing::UnitTest::GetInstance()->current_test_info();
  const auto picture = std::string(ZELNOR_FAILURES) + "/" + info->name() + ".png";
  std::filesystem::create_directories(ZELNOR_FAILURES);
  Session::saveScreen(picture);
  std::fprintf(stderr, "The screen: %s\nThe program said:\n%s\nShown:\n", picture.c_str(),
               output().c_str());
  for (const auto& name : Accessible::names()) std::fprintf(stderr, "  %s\n", name.c_str());
}

void DesktopTest::start(const QStringList& arguments) {
  program_ = session_.start(QStringLiteral(ZELNOR_PROGRAM), arguments, home_.path(), home_ / "log");
}

int DesktopTest::startAgain(const QStringList& arguments) {
  return session_.run(QStringLiteral(ZELNOR_PROGRAM), arguments, home_.path(), home_ / "log2");
}

bool DesktopTest::ends() {
  return program_->waitForFinished(kEndingPatience) &&
         program_->exitStatus() == QProcess::NormalExit && program_->exitCode() == 0;
}

bool DesktopTest::quit() { return startAgain({QStringLiteral("--quit")}) == 0 && ends(); }

bool DesktopTest::endsBy(int signal) {
  ::kill(static_cast<pid_t>(program_->processId()), signal);
  return ends();
}

bool DesktopTest::isRunning() const {
  program_->waitForFinished(/*msecs=*/0);
  return program_->state() == QProcess::Running;
}

std::string DesktopTest::read(const std::string& name) const {
  std::ifstream file(home_ / name);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::string DesktopTest::output() {
  if (program_) {
    program_->waitForReadyRead(/*msecs=*/0);
    output_ += program_->readAllStandardOutput().toStdString();
  }
  return output_ + read("log");
}

bool DesktopTest::follows() {
  return waitUntil([&] { return output().find("[FSEvents] Following") != std::string::npos; });
}

bool DesktopTest::panelComes() {
  return waitUntil([&] { return client_.isActive(kPanel); });
}

bool DesktopTest::panelGoes() {
  return waitUntil([&] { return !client_.window(kPanel); });
}

bool DesktopTest::shows(const std::string& name) {
  return waitUntil([&] { return Accessible::named(name).has_value(); });
}

bool DesktopTest::showsNot(const std::string& name) {
  return waitUntil([&] { return !Accessible::named(name); });
}

bool DesktopTest::click(const std::string& name) {
  if (!shows(name)) return false;
  client_.click(Accessible::named(name)->box().center());
  return true;
}

std::string DesktopTest::query() {
  const auto field = Accessible::named(kSearchField);
  return field ? field->text() : std::string();
}

bool DesktopTest::hasCaret() {
  return waitUntil([] {
    const auto field = Accessible::named(kSearchField);
    return field && field->isFocused();
  });
}

}  // namespace zelnor::test
