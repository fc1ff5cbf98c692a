#!/usr/bin/env bash
# A short tour of the library through its command-line tool: builds `zyn`
# and runs some of its jobs on sample files made here. bash tools/demo.sh
set -euo pipefail
cd "$(dirname "$0")/.."
bash tools/bootstrap.sh
cmake --preset default >/dev/null
cmake --build --preset default --target zyn_cli zyn_demo
zyn=$PWD/build/default/cli/zyn
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"

say() { printf '\n\033[1m# %s\033[0m\n' "$*"; }
run() { printf '\033[2m$ zyn %s\033[0m\n' "$*"; "$zyn" "$@"; }

say "The library as a host loads it: its units, tables and constants"
"$OLDPWD/build/default/demo/zyn_demo"

say "A feature file: typed features of objects, shown as a table and checked"
printf '%s\r\n' '#featdef 2 1' \
  '1 fplFeatNum 10' '1 fplFeatName speed' '1 fplFeatKind fkDouble' '1 fplComment top speed' \
  '1 fplPresets ' '1 fplSorted FALSE' \
  '2 fplFeatNum 11' '2 fplFeatName colour' '2 fplFeatKind fkString' '2 fplComment ' \
  '2 fplPresets red,green' '2 fplSorted TRUE' \
  '#featvals 2 3' '1 1 3.5' '2 1 red' '1 2 4.25' '2 2 green' '1 3 0.5' '2 3 red' '#featend' \
  > cars.feat
run feat show cars.feat
run feat check cars.feat

say "A text file: lines, the last of them, a search in the library's own dialect"
for i in $(seq 1 2000); do printf 'run %d: speed %d.%d km/h\r\n' "$i" $((i % 90)) $((i % 10)); done > log.txt
run lines log.txt
run tail -n 3 log.txt
run grep -c 'speed 8[0-9]\.' log.txt
run grep -n -p 'run 1999: speed [0-9]+' log.txt
run sha1 log.txt

say "An HTML template filled from values"
printf '<h1><#title></h1>\n<p>Runs: <#count>, by <#author>.</p>\n' > page.tpl
run html render page.tpl --set title="Speed log" --set count=2000 --set author=Zyn

say "Colours: names, models, and a scale written as a PNG strip"
run colour name Teal 0000D7FF
run colour convert Orange
run colour scale --palette Rainbow --size 256 --png scale.png
ls -l scale.png | awk '{print "scale.png:", $5, "bytes"}'

say "A tree copied with progress feedback, then deleted"
mkdir -p tree/data/sub
for i in 1 2 3 4; do head -c 8000000 /dev/urandom > "tree/data/block$i.bin"; done
printf 'note\n' > tree/data/sub/readme.txt
run copytree tree/data copy
run deltree --yes copy

say "This processor, and a password the library invents"
run cpuid > cpu.txt
head -n 8 cpu.txt
run password --length 10 --caps --special

printf '\nMore: %s --help-all\n' "$zyn"
