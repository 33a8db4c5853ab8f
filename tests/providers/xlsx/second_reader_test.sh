#!/bin/sh
# Two other programs read a workbook of ours: LibreOffice (converted to CSV, shown as the cell has it)
# and openpyxl. Both must find the cells that were written.
#
#   second_reader_test.sh WRITER
#
# Needs libreoffice-calc-nogui and python3-openpyxl.
set -eu
writer=$1
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
"$writer" "$folder/book.xlsX" "$folder/expected.json"

# 44,34,76,1: comma, double quote, UTF-8, from line 1. The values are saved as they are, not as they
# look (the eighth token), so that numbers keep the 15 digits that this program puts into CSV.
HOME=$folder soffice --headless "-env:UserInstallation=file://$folder/profile" \
  --convert-to 'csv:Text - txt - csv (StarCalc):44,34,76,1,,0,false,false' \
  --outdir "$folder/out" "$folder/book.xlsX" >"$folder/soffice.log" 2>&1 ||
  { cat "$folder/soffice.log"; exit 1; }

/usr/bin/python3 - "$folder" <<'PYTHON'
import csv, json, sys, warnings
import openpyxl

warnings.simplefilter("error")
folder = sys.argv[1]
with open(folder + "/expected.json", encoding="utf-8") as file:
    expected = [json.loads(line) for line in file]


def compare(program, expected, rows):
    faults = [f"{program}: row {i + 1}, column {j + 1}: {found!r}, not {wanted!r}"
              for i, (ours, theirs) in enumerate(zip(expected, rows))
              for j, (wanted, found) in enumerate(zip(ours, theirs)) if wanted != found]
    if len(rows) != len(expected):
        faults.append(f"{program}: {len(rows)} rows, not {len(expected)}")
    print("\n".join(faults[:20]) or f"{program}: {len(rows)} rows are the same")
    return not faults


def in_15_digits(rows):
    return [[float(f"{value:.15g}") if isinstance(value, (int, float)) else value for value in row]
            for row in rows]


def as_numbers(rows):
    return [[float(found) if isinstance(wanted, (int, float)) and found else found
             for wanted, found in zip(ours, theirs)] for ours, theirs in zip(expected, rows)]


book = openpyxl.load_workbook(folder + "/book.xlsX")
sheet = book["Data"]
good = compare("openpyxl", expected, [["" if value is None else value for value in row]
                            for row in sheet.iter_rows(values_only=True)])
formats = {cell.number_format for row in sheet["A1:K60"] for cell in row if cell.value is not None}
good &= formats == {"@"} and book.sheetnames == ["Data"]

with open(folder + "/out/book.csv", encoding="utf-8", newline="") as file:
    rows = list(csv.reader(file))
good &= len(rows) == len(expected)
good &= compare("LibreOffice", in_15_digits(expected), as_numbers(rows))
sys.exit(0 if good else 1)
PYTHON
