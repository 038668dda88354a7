#!/usr/bin/env bash
# Fails when a source folder includes a header of a folder above it. Folders are listed from the bottom
# up; folders of one level may not include each other's headers either.
set -euo pipefail
cd "$(dirname "$0")/.."
levels=(data_access db platform datamodule toolkit forms "admin customers warehouse cash" "orders reports" app)
declare -A level_of
for i in "${!levels[@]}"; do
  for folder in ${levels[$i]}; do
    [ -d "$folder" ] || continue
    for header in "$folder"/*.h "$folder"/*.inc; do
      [ -e "$header" ] && level_of[$(basename "$header")]="$i $folder"
    done
  done
done
status=0
for i in "${!levels[@]}"; do
  for folder in ${levels[$i]}; do
    [ -d "$folder" ] || continue
    while IFS=: read -r file line text; do
      header=$(sed -E 's/.*#include "([^"]+)".*/\1/' <<<"$text")
      entry=${level_of[$header]:-}
      [ -n "$entry" ] || continue
      read -r other_level other_folder <<<"$entry"
      if [ "$other_level" -gt "$i" ] || { [ "$other_level" -eq "$i" ] && [ "$other_folder" != "$folder" ]; }; then
        echo "$file:$line includes $header of $other_folder/, which lies above $folder/"
        status=1
      fi
    done < <(grep -n '#include "' "$folder"/*.h "$folder"/*.cpp 2>/dev/null || true)
  done
done
exit $status
