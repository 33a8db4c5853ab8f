#!/usr/bin/python3
"""Prints a workbook's sheet "Data" as CSV: texts quoted, numbers bare and exact."""
import sys

import openpyxl


def field(value):
    if value is None:
        return ""
    if isinstance(value, str):
        return '"' + value.replace('"', '""') + '"'
    return repr(value)


book = openpyxl.load_workbook(sys.argv[1])
if book.sheetnames[0] != "Data":
    sys.exit("the first sheet is not Data")
for row in book["Data"].iter_rows(values_only=True):
    print(",".join(map(field, row)))
