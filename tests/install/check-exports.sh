#!/bin/sh
# Compares what a library exports with what its header declares.
# check-exports.sh LIBRARY HEADER PREFIX...
set -eu
library=$1 header=$2
shift 2
prefixes=$(printf '%s|' "$@" | sed 's/|$//')
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
nm -D --defined-only "$library" | awk '$2 != "A" { print $3 }' | grep -v '^_\(init\|fini\)$' | sort -u >"$work/exported"
grep -E '_EXPORT ' "$header" | grep -oE "\\b($prefixes)[A-Za-z0-9_]*(\(|;)" | tr -d '(;' | sort -u >"$work/declared"
[ -s "$work/declared" ]
diff "$work/declared" "$work/exported"
