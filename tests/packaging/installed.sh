#!/usr/bin/env bash
# installed.sh <cmake> <build folder>: installs into a prefix of its own and looks at what is there.
set -uo pipefail
cmake=$1
build=$2
folder=$(mktemp -d "${TMPDIR:-/tmp}/zelnor-XXXXXX")
prefix="$folder/a prefix"
program=
failures=0

trap '[ -z "$program" ] || kill -KILL "$program" 2>/dev/null; rm -rf "$folder"' EXIT

failed() {
  echo "FAILED: $*" >&2
  failures=$((failures + 1))
}
# check <what> <command>…: the command succeeds and says nothing on standard error.
check() {
  local what=$1
  shift
  if ! "$@" >"$folder/output" 2>"$folder/errors" || [ -s "$folder/errors" ]; then
    cat "$folder/output" "$folder/errors" >&2
    failed "$what"
  fi
}
# waitUntil <command>…: at most a minute.
waitUntil() {
  local tries=600
  until "$@"; do
    [ $((tries -= 1)) -gt 0 ] || return 1
    sleep 0.1
  done
}

"$cmake" --install "$build" --prefix "$prefix" >/dev/null || { failed "installation"; exit 1; }
share="$prefix/share"
cd "$share" || exit 1

check "desktop entry" desktop-file-validate applications/org.zelnor.Zelnor.desktop
check "metainfo" appstreamcli validate --no-net metainfo/org.zelnor.Zelnor.metainfo.xml

for side in 16 22 24 32 48 64 128 256 512; do
  icon=icons/hicolor/${side}x$side/apps/org.zelnor.Zelnor.png
  # Width and height are the first two numbers after the head of a PNG file.
  [ "$(od -An -tu4 --endian=big -j16 -N8 "$icon" | tr -s ' ')" = " $side $side" ] || failed "$icon"
done
for icon in scalable/apps/org.zelnor.Zelnor symbolic/apps/org.zelnor.Zelnor-symbolic; do
  [ -s "icons/hicolor/$icon.svg" ] || failed "$icon"
done
grep -q '^Icon=org.zelnor.Zelnor$' applications/org.zelnor.Zelnor.desktop || failed "the entry's icon"

service=dbus-1/services/org.zelnor.Zelnor.service
exec=$(sed -n 's/^Exec=//p' "$service")
words=()
eval "words=($exec)" # as the bus takes it apart, near enough
[ "${words[0]}" -ef "$prefix/bin/zelnor" ] || failed "the bus would start '${words[0]}'"
[ "${words[*]:1}" = --background ] || failed "the bus would start it with '${words[*]:1}'"

# complete_in_bash <program> <words before the last>… <last>: what bash offers.
complete_in_bash() {
  COMP_WORDS=("$@")
  COMP_CWORD=$(($# - 1))
  COMPREPLY=()
  "_${1//-/_}" "$1" "${!#}" 2>/dev/null
  echo "${COMPREPLY[*]}"
}

for name in zelnor zelnor-find; do
  bash=bash-completion/completions/$name
  zsh=zsh/site-functions/_$name
  fish=fish/vendor_completions.d/$name.fish
  # What man warns of it says on standard error.
  check "man $name" env MANROFFSEQ= MANWIDTH=80 man --warnings -E UTF-8 -l -Tutf8 -P cat "man/man1/$name.1"
  check "$bash" bash -n "$bash"
  ! command -v zsh >/dev/null || check "$zsh" zsh -n "$zsh"
  ! command -v fish >/dev/null || check "$fish" env HOME="$folder" fish -n "$fish"
  # shellcheck disable=SC1090
  source "$bash"
  "$prefix/bin/$name" --help >"$folder/help" || failed "$name --help"
  for option in $(grep -oE '^ .*--[a-z-]+' "$folder/help" | grep -oE -- '--[a-z-]+' | sort -u); do
    [ "$(complete_in_bash "$name" "$option")" = "$option" ] || failed "bash does not complete $name $option"
    grep -q -- "$option" "$zsh" || failed "$option is not in $zsh"
    grep -q -- "-l ${option#--} " "$fish" || failed "$option is not in $fish"
    grep -q -- "${option//-/\\\\-}" "man/man1/$name.1" || failed "$option is not in the manual page of $name"
  done
done
[ "$(complete_in_bash zelnor-find --category a)" = "all audio archive" ] || failed "values of --category"
[ "$(complete_in_bash zelnor-find --sort size --desc pd)" = "" ] || failed "a query is nobody's to complete"

# It runs from there, in a home where nothing is.
mkdir -p "$folder/home/some" "$folder/run"
chmod 700 "$folder/run"
touch "$folder/home/some/needle.txt"
env -i PATH="$PATH" HOME="$folder/home" XDG_RUNTIME_DIR="$folder/run" LSAN_OPTIONS="${LSAN_OPTIONS:-}" \
  TSAN_OPTIONS="${TSAN_OPTIONS:-}" DBUS_SESSION_BUS_ADDRESS=unix:path=/nowhere QT_QPA_PLATFORM=offscreen \
  "$prefix/bin/zelnor" --index "$folder/index" "$folder/home/some" >"$folder/output" 2>&1 &
program=$!
found() { [ "$("$prefix/bin/zelnor-find" --index "$folder/index" needle 2>/dev/null)" = "$folder/home/some/needle.txt" ]; }
waitUntil found || { cat "$folder/output" >&2; failed "the installed program indexes nothing"; }
kill -TERM "$program"
wait "$program" || failed "the installed program ended with $?"
program=

[ "$failures" -eq 0 ]
