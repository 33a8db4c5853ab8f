#!/usr/bin/python3
"""Runs a saved query and prints what came out as a list of rows.

    rows.py SETTINGS-FOLDER DATA-SOURCE PERIODS OUTPUT

Needs openpyxl (Debian: python3-openpyxl) to read the workbook.
"""

import sys

import openpyxl
import vokcubeq17


def rows(run):
    """The rows of the run's workbook as lists of values, the labels first; [] without a workbook."""
    if not run.workbook:
        return []
    with open(run.workbook, "rb") as file:  # the library knows no ending .xlsX
        sheet = openpyxl.load_workbook(file)["Data"]
        return [list(row) for row in sheet.iter_rows(values_only=True)]


def main(settings_folder, data_source, periods, output):
    cube = vokcubeq17.Cube(settings_folder)
    for row in rows(cube.run(data_source, periods, output)):
        print(row)


if __name__ == "__main__":
    try:
        main(*sys.argv[1:])
    except vokcubeq17.Failure as failure:
        sys.exit(str(failure))
