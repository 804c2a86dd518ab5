#!/usr/bin/env bash
# tools/lint.sh format: checks the format of all our code; tools/lint.sh lint: clang-tidy too. No finding is allowed.
source "$(dirname "$(readlink -f "$0")")/build.sh"

mapfile -t files < <(git ls-files 'src/*.h' 'src/*.cpp' 'tests/*.h' 'tests/*.cpp' 'bench/*.h' 'bench/*.cpp')
clang-format-19 --dry-run -Werror "${files[@]}"
echo "format: ${#files[@]} files, no findings"
[ "${1:-lint}" = lint ] || exit 0

# clang-tidy reads how each file is compiled; what Qt's moc generates has to be there first.
build release
mapfile -t sources < <(git ls-files 'src/*.cpp' 'bench/*.cpp' 'tests/*.cpp')
# Asio 1.22 knows only the coroutines of clang before the standard's, unless told.
coroutines=(--extra-arg=-DASIO_HAS_CO_AWAIT --extra-arg=-DASIO_HAS_STD_COROUTINE)
printf '%s\0' "${sources[@]}" |
  xargs -0 -P "$(nproc)" -n 1 clang-tidy-19 -p build/release --quiet --warnings-as-errors='*' "${coroutines[@]}" 2>/dev/null
echo "lint: ${#files[@]} files, no findings"
