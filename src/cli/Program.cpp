#include "cli/Program.h"

#include <csignal>
#include <exception>
#include <system_error>

#include "cli/Diagnostics.h"
#include "cli/Failure.h"
#include "cli/FindCommand.h"
#include "cli/IndexLocation.h"
#include "cli/Options.h"
#include "cli/RebuildCommand.h"
#include "cli/StandardOutput.h"
#include "cli/StatusCommand.h"

namespace zelnor::cli {

namespace {

ExitStatus search(const Options& options, const IndexLocation& location, StandardOutput& output) {
  FindCommand command(options, location, output);
  return options.answersStandardInput ? command.answerStandardInput()
                                      : command.find(options.queryText);
}

ExitStatus execute(const Options& options) {
  StandardOutput output;
  if (!options.information.empty()) {
    output.write(options.information);
    output.flush();
    return ExitStatus::matches;
  }
  const auto location = IndexLocation::find(options.index);
  if (options.rebuild) rebuild(options, location);
  if (options.status) printStatus(options, location, output);
  if (options.answersStandardInput || options.hasQuery) return search(options, location, output);
  return ExitStatus::matches;
}

}  // namespace

ExitStatus run(const std::vector<std::string>& arguments) {
  // A reader that goes away is an error of write(2), like any other.
  std::signal(SIGPIPE, SIG_IGN);
  try {
    return execute(parseOptions(arguments));
  } catch (const DatabaseError& error) {
    report(described(error));
  } catch (const std::system_error& error) {
    // Whoever closes a pipe has seen enough.
    if (error.code() == std::errc::broken_pipe) return ExitStatus::matches;
    report(error.what());
  } catch (const std::exception& error) {
    report(error.what());
  }
  return ExitStatus::error;
}

}  // namespace zelnor::cli
