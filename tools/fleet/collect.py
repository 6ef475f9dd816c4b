#!/usr/bin/python3
"""Prints a line for each result of a fleet of tests. usage: collect.py result-*.json"""
import json
import sys

print("file,verdict,origin,device,serialNumber,startedAt,passed,results")
for path in sys.argv[1:]:
    with open(path, encoding="utf-8") as file:
        test = json.load(file)
    results = test["rows"]
    fields = [path] + [test.get(name, "") for name in ("verdict", "origin", "device", "serialNumber", "startedAt")]
    fields += [sum(result["mark"] == "passed" for result in results), len(results)]
    print(",".join('"' + str(field).replace('"', '""') + '"' for field in fields))
