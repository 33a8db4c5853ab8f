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
"$writer" "$folder/book.xlsX" "$folder/expected"

# 44,34,76,1: comma, double quote, UTF-8, from line 1. The values are saved as they are, not as they
# look (the eighth token), so that numbers keep the 15 digits that this program puts into CSV.
HOME=$folder soffice --headless "-env:UserInstallation=file://$folder/profile" \
  --convert-to 'csv:Text - txt - csv (StarCalc):44,34,76,1,,0,false,false' \
  --outdir "$folder/out" "$folder/book.xlsX" >"$folder/soffice.log" 2>&1 ||
  { cat "$folder/soffice.log"; exit 1; }

/usr/bin/python3 - "$folder" <<'PYTHON'
import csv, sys, warnings
import openpyxl

warnings.simplefilter("error")
folder = sys.argv[1]


def with_numbers(rows, digits):
    return [[float(f"{float(cell):.{digits}g}") if cell and column > 10 else cell
             for column, cell in enumerate(row)] for row in rows]


def compare(program, expected, rows):
    faults = [f"{program}: row {i + 1}: {found!r}, not {wanted!r}"
              for i, (wanted, found) in enumerate(zip(expected, rows)) if wanted != found]
    if len(rows) != len(expected):
        faults.append(f"{program}: {len(rows)} rows, not {len(expected)}")
    print("\n".join(faults[:20]) or f"{program}: {len(rows)} rows are the same")
    return not faults


with open(folder + "/expected", encoding="utf-8", newline="") as file:
    cells = file.read().split("\0")[:-1]
expected = [cells[i:i + 13] for i in range(0, len(cells), 13)]

book = openpyxl.load_workbook(folder + "/book.xlsX")
sheet = book["Data"]
rows = [["" if cell is None else cell for cell in row] for row in sheet.iter_rows(values_only=True)]
good = compare("openpyxl", with_numbers(expected, 17), rows)
formats = {cell.number_format for row in sheet["A1:K60"] for cell in row if cell.value is not None}
good &= formats == {"@"} and book.sheetnames == ["Data"]

with open(folder + "/out/book.csv", encoding="utf-8", newline="") as file:
    rows = list(csv.reader(file))
good &= compare("LibreOffice", with_numbers(expected, 15), with_numbers(rows, 17))
sys.exit(0 if good else 1)
PYTHON
