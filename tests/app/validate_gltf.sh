#!/bin/sh
# validate_gltf.sh FOLDER FILE...: runs the npm package gltf-validator, kept in FOLDER, over glTF files.
# Prints a line a file. Exit status 1 if any has an error, 77 if there is no validator to be had.
set -u
folder=$1
shift
here=$(cd "$(dirname "$0")" && pwd)
command -v node >/dev/null && command -v npm >/dev/null || { echo "node or npm is missing"; exit 77; }
if [ ! -d "$folder/node_modules/gltf-validator" ]; then
    mkdir -p "$folder"
    npm install --prefix "$folder" --no-save --no-audit --no-fund --silent gltf-validator@2.0.0-dev.3.10 \
        >/dev/null 2>&1 || { echo "gltf-validator cannot be installed"; exit 77; }
fi
NODE_PATH="$folder/node_modules" exec node "$here/validate_gltf.js" "$@"
