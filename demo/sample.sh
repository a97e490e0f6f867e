#!/usr/bin/env bash
# sample.sh PROGRAMS FOLDER: makes a sample recording in FOLDER (kept for the next time), cuts three entries from it in
# one pass, and prints what is found in them beside what was put in.
set -euo pipefail
programs=$1
folder=$2

recording="$folder/Shortwave 49m.wav"
files=("$folder/Shortwave 49m 000.wav" "$folder/Shortwave 49m 001.wav")
stations=(5955000:-20:am 6070000:-26:am 6085000:-32:tone 6155000:-23:am 6610000:-29:am)
synth=(--rate 2000000 --centre 6.1M --seconds 20 --bits 16 --files 2 --start 2026-01-31T18:00:00Z --noise -60 --seed 1)
for station in "${stations[@]}"; do synth+=(--station "$station"); done

# The recording is made once for these options; a killed run leaves no note of them, and it is made again.
mkdir -p "$folder/cuts"
note="$folder/made-with.txt"
if [ "$(cat "$note" 2> /dev/null)" != "${synth[*]}" ] || [ ! -e "${files[0]}" ] || [ ! -e "${files[1]}" ]; then
  echo "Making a sample recording in $folder"
  rm -f "$note"
  "$programs/carvello-cli" synth "$recording" "${synth[@]}" --overwrite --quiet
  echo "${synth[*]}" > "$note"
fi
"$programs/carvello-cli" info "${files[0]}" | sed '/^$/,$d' # without the metadata

echo
echo 'Three entries cut in one pass:'
"$programs/carvello-cli" cut "${files[0]}" --output "$folder/cuts" --overwrite --quiet --json \
  --entry f=6.07M,bw=10k \
  --entry f=5.96M,bw=50k,start=+5,duration=10 \
  --entry f=6.2M,bw=250k,bits=32,size=RF64 > "$folder/result.json"
"$programs/sample-report" "${stations[@]}" < "$folder/result.json"
