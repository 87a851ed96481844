#!/bin/sh
# Usage: exported_symbols.sh LIBRARY SYMBOL
# Fails unless the dynamic symbols that LIBRARY defines are SYMBOL alone, and the libraries that it
# names as needed define all the symbols that it uses.
set -eu
# The same letters and order everywhere.
LC_ALL=C
export LC_ALL
library=$1
symbol=$2
status=0

# The symbols of nm's output without their versions.
names() {
    awk 'NF > 0 {print $NF}' | sed 's/@.*//' | sort -u
}

exported=$(nm -D --defined-only "$library" | names)
if [ "$exported" != "$symbol" ]; then
    echo "$library: exported are the symbols below; it should be $symbol alone" >&2
    echo "$exported" >&2
    status=1
fi

directory=$(mktemp -d)
trap 'rm -rf "$directory"' EXIT
needed=$(objdump -p "$library" | awk '$1 == "NEEDED" {print $2}')
if [ -z "$needed" ]; then
    echo "$library: names no library as needed" >&2
    exit 1
fi
ldd "$library" > "$directory/found"
if grep 'not found' "$directory/found" >&2; then
    echo "$library: the libraries above are needed and not found" >&2
    exit 1
fi
: > "$directory/offered"
for name in $needed; do
    # "name => path (address)"; the loader itself stands there by its path.
    path=$(awk -v name="$name" '$1 == name {print $3} $1 ~ "/" name "$" {print $1}' \
        "$directory/found")
    if [ ! -f "$path" ]; then
        echo "$library: needed $name is not where ldd says: '$path'" >&2
        exit 1
    fi
    nm -D --defined-only "$path" | names >> "$directory/offered"
done
sort -u "$directory/offered" -o "$directory/offered"

# A weak symbol may stay undefined: it is asked for only if something is there.
nm -D --undefined-only "$library" | awk '$1 != "w" && $1 != "v"' | names > "$directory/used"
missing=$(comm -23 "$directory/used" "$directory/offered")
if [ -n "$missing" ]; then
    echo "$library: used, but defined by none of: $(echo $needed)" >&2
    echo "$missing" >&2
    status=1
fi
exit $status
