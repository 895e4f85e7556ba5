#!/usr/bin/env bash
# Pictures of the test chart: scripts/pictures.sh TOOL OUTDIR
#
# Makes chart frames of 768x512 as cameras send them (OUTDIR/frames), in every format that the tool converts and
# for mosaics in all four orders. Converts each by every method and to every target that `qvn formats` lists; a
# mosaic's other three orders by its first method alone. 12 bits in 16 are spread, to be seen.
# OUTDIR/sheet.png shows the methods side by side, OUTDIR/orders.png a frame in all four orders.
set -euo pipefail
tool=${1:?usage: scripts/pictures.sh TOOL OUTDIR}
out=${2:?usage: scripts/pictures.sh TOOL OUTDIR}
size=768x512
mkdir -p "$out/frames"

make_frame() { "$tool" chart "$out/frames/$1.raw" --size $size --format "${1%%_*}" "${@:2}"; }
# In a shell of its own, with words for its arguments: several run at a time.
convert() { "$tool" convert "$out/frames/$1.raw" "$out/$2.png" --size $size --from "${1%%_*}" "${@:3}"; }

# A line for each conversion: format, mosaic or plain, method, target.
conversions=$("$tool" formats | awk '
  /^Targets/ { exit }
  /^  [a-z]/ { format = $1; kind = /Bayer/ ? "mosaic" : "plain" }
  $1 == "--method" { method = $2; print format, kind, method, $4 }
  $1 == "--to" { for (i = 2; i <= NF; i++) { sub(/,$/, "", $i); print format, kind, method, $i } }')

made=
jobs=()
while read -r format kind method target; do
  frame=$format
  order=()
  if [[ $kind == mosaic ]]; then
    frame=${format}_rggb
    order=(--pattern rggb)
  fi
  if [[ $format != "$made" ]]; then
    made=$format
    make_frame "$frame" "${order[@]}"
    if [[ $kind == mosaic ]]; then
      for other in grbg gbrg bggr; do
        make_frame "${format}_$other" --pattern $other
        jobs+=("${format}_$other ${format}_${other}_${method}_$target --pattern $other --method $method --to $target")
      done
    fi
  fi
  spread=()
  [[ $format/$target == raw12packed/bgr16 ]] && spread=(--stretch)
  jobs+=("$frame ${frame}_${method}_$target ${order[*]} ${spread[*]} --method $method --to $target")
done <<<"$conversions"
export tool out size
export -f convert
printf '%s\n' "${jobs[@]}" | xargs -d '\n' -n 1 -P "$(nproc)" bash -c 'convert $1' pictures

"$tool" sheet "$out/frames/raw8_rggb.raw" "$out/sheet.png" --size $size --from raw8 --pattern rggb
"$tool" sheet "$out/frames/raw8_gbrg.raw" "$out/orders.png" --size $size --from raw8 --show patterns
echo "Look at $out/sheet.png first; the pictures of every format and method are in $out."
