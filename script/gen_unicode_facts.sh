#!/bin/sh
# Writes test/data/unicode/facts.txt, the facts that the tests of the Unicode tables compare with, from the files of the
# Unicode Character Database 16.0. It shares nothing with gen_unicode.py, which makes the tables.
#
# usage: script/gen_unicode_facts.sh UCD-FOLDER > test/data/unicode/facts.txt
set -eu
cd "$1"

echo "# Facts of the Unicode Character Database 16.0, written by script/gen_unicode_facts.sh from UnicodeData.txt,"
echo "# Scripts.txt, PropList.txt, SpecialCasing.txt, CaseFolding.txt and CompositionExclusions.txt. One fact a line:"
echo "# [category], [class], [script]: FIRST LAST VALUE; [decimal]: FIRST LAST of the digits 0 to 9; [white]: FIRST LAST;"
echo "# [upper], [lower], [fold]: CODE CODES...; [map]: CODE TYPE CODES...; [exclusion]: CODE. What isn't named has none."

hex='function hex(s,   i, v) { for (i = 1; i <= length(s); i++) v = v * 16 + index("0123456789ABCDEF", substr(s, i, 1)) - 1; return v + 0 }
function emit(kind) { if (value[kind] != "") print first[kind], last[kind], value[kind]; value[kind] = "" }
function add(kind, from, to, what) {
    if (what == value[kind] && hex(from) == hex(last[kind]) + 1) { last[kind] = to; return }
    emit(kind)
    first[kind] = from; last[kind] = to; value[kind] = what
}'

for kind in category class; do
    echo "[$kind]"
    awk -F';' -v kind="$kind" "$hex"'
        $2 ~ /First>$/ { from = $1; next }
        { what = kind == "category" ? $3 : $4 == "0" ? "" : $4
          add(kind, $2 ~ /Last>$/ ? from : $1, $1, what) }
        END { emit(kind) }' UnicodeData.txt
done

echo "[script]"
awk -F'[;#]' "$hex"'/^[0-9A-F]/ { gsub(/ /, "", $1); gsub(/ /, "", $2)
    n = split($1, ends, /\.\./); add("script", ends[1], ends[n], $2) } END { emit("script") }' Scripts.txt

echo "[decimal]"
awk -F';' '$3 == "Nd" && $7 == "0" { from = $1 } $3 == "Nd" && $7 == "9" { print from, $1 }' UnicodeData.txt

echo "[white]"
awk -F'[;#]' '$2 ~ /^ White_Space / { gsub(/ /, "", $1); n = split($1, ends, /\.\./); print ends[1], ends[n] }' PropList.txt

# Full mappings win over simple ones; a mapping to itself is none.
for column in "upper 13 4" "lower 14 2"; do
    set -- $column
    echo "[$1]"
    { grep -v '^#' SpecialCasing.txt | awk -F'; *' -v full="$3" 'NF == 5 || $5 ~ /^#/ { print "full;" $1 ";" $full }'
      awk -F';' -v simple="$2" '$simple != "" { print "simple;" $1 ";" $simple }' UnicodeData.txt
    } | awk -F';' '!($2 in seen) { seen[$2] = 1; if ($2 != $3) print $2, $3 }'
done
echo "[fold]"
awk -F'; *' '$2 == "C" || $2 == "F" { print $1, $3 }' CaseFolding.txt

echo "[map]"
awk -F';' '$6 ~ /^</ { sub(/>/, "", $6); sub(/</, "", $6); print $1, $6; next } $6 != "" { print $1, "canonical", $6 }' UnicodeData.txt
echo "[exclusion]"
awk '/^[0-9A-F]/ { print $1 }' CompositionExclusions.txt
