"""The benchmark's table: verdicts, cases that could not be measured, exit codes.

Usage: report_test.py REPORT
"""

import json
import os
import subprocess
import sys
import tempfile
import unittest

REPORT = sys.argv.pop()


def result(name, figure, limit, at_least=0):
    return {"name": f"{name}/iterations:3/manual_time", "label": "another|ratio", "figure": figure,
            "limit": limit, "atLeast": at_least, "ours": 1.0, "beside": 2.0}


class ReportTest(unittest.TestCase):
    def report(self, form, *results):
        with tempfile.TemporaryDirectory() as folder:
            path = os.path.join(folder, "results.json")
            with open(path, "w", encoding="utf-8") as file:
                json.dump({"benchmarks": list(results)}, file)
            missing = os.path.join(folder, "none.json")
            return subprocess.run([sys.executable, REPORT, form, path, missing], check=False,
                                  capture_output=True, text=True)

    def verdicts(self, *results):
        rows = self.report("table", *results).stdout.splitlines()[2:]
        return [row.split("|")[5].strip() for row in rows]

    def test_a_limit_belongs_to_what_reaches_it(self):
        self.assertEqual(self.verdicts(result("a", 0.5, 0.5), result("b", 0.501, 0.5)),
                         ["reached", "missed"])

    def test_some_figures_must_be_large(self):
        self.assertEqual(self.verdicts(result("a", 1.8, 1.8, 1), result("b", 1.7, 1.8, 1)),
                         ["reached", "missed"])

    def test_the_exit_code_tells(self):
        self.assertEqual(self.report("table", result("a", 1, 2)).returncode, 0)
        self.assertEqual(self.report("table", result("a", 1, 2), result("b", 3, 2)).returncode, 1)
        self.assertEqual(self.report("table").returncode, 2)

    def test_what_could_not_be_measured_is_named(self):
        failed = {"name": "a/iterations:1/manual_time", "error_occurred": True,
                  "error_message": "no such program"}
        report = self.report("table", failed, result("b", 1, 2))
        self.assertEqual(report.returncode, 2)
        self.assertIn("no such program", report.stdout)
        self.assertIn("not measured", report.stdout)

    def test_the_figures_come_as_json_too(self):
        rows = json.loads(self.report("json", result("read", 0.97, 1.03)).stdout)
        self.assertEqual(rows[0]["case"], "read")
        self.assertEqual(rows[0]["beside"], "another")
        self.assertEqual(rows[0]["figure"], 0.97)
        self.assertTrue(rows[0]["reached"])


if __name__ == "__main__":
    unittest.main()
