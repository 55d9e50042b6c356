#!/usr/bin/env bash
# Measures what the document cache holds, as xmlquery's maximum resident set (/usr/bin/time -v):
# 300 distinct 1 MB catalogues without a budget and with XMLPLUGIN_CACHE_MAX_MB=256, then one
# 14 MB catalogue under 32 spellings of its name. Needs the release build:
#   cmake --preset release && cmake --build --preset release --target xmlquery XmlPlugin
set -euo pipefail
cd "$(dirname "$0")/.."
XMLQUERY="$PWD/build/release/bin/xmlquery"
WORK=$(mktemp -d)
trap 'rm -rf "$WORK"' EXIT
cd "$WORK"

# A catalogue of about $1 MB on standard output.
catalogue() {
  awk -v bytes=$(($1 * 1024 * 1024)) 'BEGIN {
    print "<?xml version=\"1.0\"?>\n<catalog>"
    for (item = 0; size < bytes; ++item) {
      line = sprintf("  <item id=\"%d\" kind=\"%s\">\n    <name>Item %d</name>\n" \
                     "    <price>%d.50</price>\n    <tags><tag>alpha</tag><tag>beta</tag></tags>\n" \
                     "    <note>Kept &amp; shipped in order %d</note>\n  </item>",
                     item, item % 3 == 0 ? "book" : "disc", item, item % 97, item)
      print line
      size += length(line) + 1
    }
    print "</catalog>"
  }'
}

# One request line per file name given.
requests() {
  for name in "$@"; do
    echo "{\"type\": \"XmlValue\", \"file\": \"$name\", \"xpath\": \"count(/catalog/item)\"}"
  done
}

# Runs the requests on standard input; prints the distinct answers and the resident set.
measure() {
  /usr/bin/time -v "$XMLQUERY" --batch 2>time.txt | sort | uniq -c
  grep 'Maximum resident set size' time.txt
}

catalogue 1 >f0.xml
names=(f0.xml)
for i in $(seq 1 299); do
  cp f0.xml "f$i.xml"
  names+=("f$i.xml")
done
echo "300 distinct 1 MB files, no budget:"
requests "${names[@]}" | measure
echo "300 distinct 1 MB files, XMLPLUGIN_CACHE_MAX_MB=256:"
requests "${names[@]}" | XMLPLUGIN_CACHE_MAX_MB=256 measure

catalogue 14 >one.xml
mkdir -p d1/d2
ln -s one.xml link.xml
spellings=(one.xml ./one.xml .//one.xml ././one.xml ./././one.xml ././/one.xml d1/../one.xml
  d1/d2/../../one.xml ./d1/../one.xml d1/./../one.xml d1//../one.xml d1/d2//../../one.xml
  d1/.././one.xml ./d1/d2/../../one.xml link.xml ./link.xml .//link.xml d1/../link.xml
  d1/d2/../../link.xml "$WORK/one.xml" "$WORK//one.xml" "$WORK/./one.xml" "$WORK/././one.xml"
  "$WORK/d1/../one.xml" "$WORK/d1/d2/../../one.xml" "$WORK/link.xml" "$WORK/d1/../link.xml"
  "/$WORK/one.xml" "/$WORK//one.xml" "$WORK/.//one.xml" "$WORK/d1//../one.xml" "$WORK/d1/./../one.xml")
echo "one 14 MB file under ${#spellings[@]} names:"
requests "${spellings[@]}" | measure
