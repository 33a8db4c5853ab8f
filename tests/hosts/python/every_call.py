"""Calls all of the Python module on the example.

    every_call.py VERSION SETTINGS-FOLDER OUTPUT
"""
import sys
import threading
import unittest

import rows
import vokcubeq17

version, folder, output = sys.argv[1:]


class EveryCall(unittest.TestCase):
    def test_a_run_becomes_a_list_of_rows(self):
        self.assertEqual(vokcubeq17.version(), version)
        told = []
        cube = vokcubeq17.Cube(folder, progress=lambda step, done: told.append((step, done)))
        self.assertEqual(cube.names("DataSourceInfo"), ["Domestic", "Export"])
        run = cube.run("Domestic", "Demo", output)
        table = rows.rows(run)
        self.assertEqual(len(table), run.rows + 1)
        self.assertIn("M1>Jan 2024", table[0])
        self.assertEqual((told[0], told[-1]), (("settings", 0), ("", 1)))

    def test_what_fails_says_why(self):
        shown = []
        vokcubeq17.show_messages(lambda title, text: shown.append(text))
        with self.assertRaises(vokcubeq17.Failure) as caught:
            vokcubeq17.Cube(folder).run("שלום", "Demo", output)
        vokcubeq17.show_messages(None)
        self.assertEqual(caught.exception.code, 2222)
        self.assertIn("שלום", caught.exception.cause)
        self.assertEqual(len(shown), 1)

    def test_another_thread_stops_a_run(self):
        def stop(step, _):
            if step == "query":
                thread = threading.Thread(target=cube.stop)
                thread.start()
                thread.join()
        cube = vokcubeq17.Cube(folder, progress=stop)
        with self.assertRaises(vokcubeq17.Failure) as caught:
            cube.run("Domestic", "Demo", output)
        self.assertEqual(caught.exception.code, vokcubeq17.Failure.STOPPED)

    def test_each_of_many_threads_gets_its_own_report(self):
        def run_often(number):
            source = ("Domestic", "Export")[number % 2]
            cube = vokcubeq17.Cube(folder)
            for _ in range(3):
                run = cube.run(source, "Demo", f"{output}{number}")
                tables[number].append(rows.rows(run))
        tables = [[] for _ in range(8)]
        threads = [threading.Thread(target=run_often, args=(number,)) for number in range(8)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        self.assertNotEqual(tables[0][0], tables[1][0])
        for number, own in enumerate(tables):
            self.assertEqual(own, [tables[number % 2][0]] * 3)


unittest.main(argv=[sys.argv[0]])
