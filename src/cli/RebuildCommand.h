#pragma once

#include "cli/IndexLocation.h"
#include "cli/Options.h"
#include "indexer/IndexConfiguration.h"

namespace zelnor::cli {

/// What a rebuild indexes: the user's settings, with what the options say in the place of theirs.
/// Throws Failure for a root that is no folder.
IndexConfiguration configurationFor(const Options& options);

/// What the index was built from, as far as its settings tell.
IndexConfiguration recordedConfiguration(const IndexLocation& location);

/// Builds the index anew, and returns when it is complete. The user's settings, which the
/// application follows, stay as they are; an index named by its folder records there what it was
/// built from. Throws Failure while another process writes the index or if its folder cannot be
/// written, DatabaseError if the index cannot be.
void rebuild(const Options& options, const IndexLocation& location);

}  // namespace zelnor::cli
