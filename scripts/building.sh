# For the commands of this tree, to be sourced: what they say while they work.

# Copies standard input to a log. Where the lines count ("[12/195] ..." of ninja, "12/344 Test ..." of ctest), says on
# standard error that this goes on: a line that is kept up on a terminal, and once elsewhere. progress WHAT LOG
progress() {
  local line said=
  while IFS= read -r line; do
    printf '%s\n' "$line"
    [[ $line =~ ^\ *\[?([0-9]+)/([0-9]+)(\]| Test) ]] || continue
    if [ -t 2 ]; then
      printf '\r%s: %d of %d\e[K' "$1" "${BASH_REMATCH[@]:1:2}" >&2
    elif [ -z "$said" ]; then
      echo "$1" >&2
    fi
    said=1
  done >"$2"
  [ -t 2 ] && [ -n "$said" ] && printf '\r\e[K' >&2
  return 0
}

# Builds a target in a build tree, which is configured where that was not done yet. What is wrong goes to standard
# output. build WHAT FOLDER TARGET CONFIGURE-COMMAND...
build() {
  local what=$1 folder=$2 target=$3 log=$2/build.log
  shift 3
  mkdir -p "$folder"
  if [ ! -f "$folder/build.ninja" ] || [ "${BASH_SOURCE%/*}/../CMakePresets.json" -nt "$folder/build.ninja" ]; then
    "$@" >"$log" 2>&1 || { tail -n 40 "$log" && echo "$what: cannot be configured; all of its output is in $log" && return 1; }
  fi
  NINJA_STATUS='[%f/%t] ' cmake --build "$folder" --target "$target" 2>&1 | progress "$what" "$log"
  [ "${PIPESTATUS[0]}" -eq 0 ] && return
  sed -n '/^FAILED:/,$p' "$log" | head -n 60
  echo "$what: failed; all of its output is in $log"
  return 1
}
