#!/bin/sh
# From a molecule file to ranked hits with the bundled molecules.
# Usage: scripts/demo.sh PATH_TO_QXFP   (from the top of the tree; writes to demo/)
set -eu
qxfp=$1
molecules=data/molecules.smi
database=demo/molecules.fpbin
mkdir -p demo

run() {
  printf '\n$ qxfp'
  for word in "$@"; do
    case $word in
      *[!A-Za-z0-9_./=,-]*) printf " '%s'" "$word" ;;
      *) printf ' %s' "$word" ;;
    esac
  done
  printf '\n'
  "$qxfp" "$@"
}

echo
echo "1. One fingerprint per molecule, written to a file made for scanning"
run create "$molecules" "$database" -numbits 2048
run info "$database"

echo
echo "2. Known drugs as queries: the five most similar of the collection"
while read -r smiles name; do
  echo
  echo "--- $name"
  run search "$database" "$smiles" -limit 5
done <data/drugs.smi

echo
echo "3. Two kinase inhibitors by every measure"
run compare 'COc1cc2ncnc(Nc3ccc(F)c(Cl)c3)c2cc1OCCCN1CCOCC1' 'C#Cc1cccc(Nc2ncnc3cc(OCCOC)c(OCCOC)cc23)c1'

echo
echo "4. How alike the collection is in itself, and the nearest neighbours of every molecule"
run histogram "$database" -bins 10 -out table
echo
echo '$ qxfp matrix '"$database"' -titles -limit 2 | head -7'
"$qxfp" matrix "$database" -titles -limit 2 | head -7

echo
echo "5. Straight over the molecule file, by the Lingos of the SMILES"
run search "$molecules" 'COc1cc2ncnc(Nc3ccc(F)c(Cl)c3)c2cc1OCCCN1CCOCC1' -type Lingo -limit 5

cat <<'END'

Next:
  build/release/tools/qxfp/qxfp create YOUR.smi YOUR.fpbin       your own molecules (SMILES, SD or mol2, also gzipped)
  build/release/tools/qxfp/qxfp search YOUR.fpbin 'c1ccccc1O'    a SMILES, a molecule file or @INDEX as the query
  build/release/tools/qxfp/qxfp help search                      every option
  make install                                                   puts qxfp, the libraries and the headers in place
END
