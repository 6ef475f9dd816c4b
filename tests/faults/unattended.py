"""Makes the system fail under an unattended run and looks whether its verdict and its files can be trusted.

For each kind of call it fails the n-th one, n = 1, 2, 3 ... until a run meets no failure, once and from then
on, with and without a former file where the archive is to be saved. Allocations, of which there are
thousands, are failed at random places.

usage: unattended.py PROGRAM LIBRARY [--kinds KIND,...] [--step STEP] [--allocations COUNT] [--seed NUMBER]
"""

import argparse
import collections
import concurrent.futures
import random
import signal
import sys

from trial import HUNG, Trial, readFile

KINDS = ["open", "read", "write", "sync", "rename", "close", "thread"]
OUT_OF_TOLERANCE = 1
Case = collections.namedtuple("Case", "kind at isFromThenOn hasFormer")


class Tester:
    def __init__(self, program, library):
        self._program = program
        self._library = library
        self.statuses = collections.Counter()
        self.lost = 0
        self.failures = []
        with Trial(program) as trial:
            assert trial.measure() == 0, trial.errors
            self._former = readFile(trial.archive)

    def allocations(self):
        """How many there are in a run that nothing happens to."""
        with Trial(self._program) as trial:
            assert trial.measure(self._preloaded(trial, Case("none", 0, False, False))) == 0, trial.errors
            lines = readFile(trial.file("log")).decode().split("\n")
            return int(next(line for line in lines if line.startswith("allocation ")).split()[1])

    def check(self, case):
        """Whether the run has met a failure."""
        with Trial(self._program) as trial:
            if case.hasFormer:
                with open(trial.archive, "wb") as file:
                    file.write(self._former)
            status = trial.measure(self._preloaded(trial, case))
            met = readFile(trial.file("log"))
            if met is None:
                return False
            self.statuses[case.kind, status] += 1
            errors = trial.errors
            problem = self._problem(trial, case, status)
            if problem:
                self.failures.append(case)
                print(f"FAILED: {case}: {problem}; status {status}\n{met.decode()}{errors}", flush=True)
            return True

    def _preloaded(self, trial, case):
        extra = {"LD_PRELOAD": self._library, "KES_FAIL_KIND": case.kind, "KES_FAIL_AT": str(case.at),
                 "KES_FAIL_BELOW": trial.own, "KES_FAIL_LOG": trial.file("log")}
        return {**extra, "KES_FAIL_ON": "1"} if case.isFromThenOn else extra

    def _problem(self, trial, case, status):
        if status == HUNG:
            return "it hangs"
        # Where no exception can pass, the language or the toolkit itself ends the program.
        isEnded = case.kind == "allocation" and status in (-signal.SIGABRT, -signal.SIGTRAP)
        if status < 0 and not isEnded:
            return "killed by a signal"
        if status == OUT_OF_TOLERANCE:
            return "a verdict that a healthy relay does not deserve"
        archive = readFile(trial.archive)
        if status == 0:
            if not trial.opens(archive):
                return "a success with a broken archive"
            return None if trial.isReportWhole() else "a success with a broken report"
        if case.hasFormer:
            return None if self._isThere(trial, archive) else "neither the former nor the new bytes are there"
        # Where nothing was and nothing can be written there is nothing to have back.
        self.lost += not self._isThere(trial, archive)
        return None

    def _isThere(self, trial, archive):
        kept = [archive, *trial.copies().values()]
        return self._former in kept or any(trial.opens(content) for content in kept)


def series(tester, step, kind, isFromThenOn, hasFormer):
    places = 0
    while tester.check(Case(kind, 1 + places * step, isFromThenOn, hasFormer)):
        places += 1
    print(f"{kind}, {'from then on' if isFromThenOn else 'once'}, {'with' if hasFormer else 'without'} a former "
          f"file: {places} places", flush=True)


def anywhere(tester, total, places, isFromThenOn):
    """At one random place; runs differ a little in the number of their allocations."""
    while not tester.check(Case("allocation", places.randint(1, total), isFromThenOn, True)):
        pass


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("program")
    parser.add_argument("library")
    parser.add_argument("--kinds", default=",".join(KINDS))
    parser.add_argument("--step", type=int, default=1, help="look only at every STEP-th place")
    parser.add_argument("--allocations", type=int, default=0)
    parser.add_argument("--seed", type=int, default=1)
    arguments = parser.parse_args()
    tester = Tester(arguments.program, arguments.library)
    booleans = (False, True)
    with concurrent.futures.ThreadPoolExecutor(2) as pool:
        tasks = [pool.submit(series, tester, arguments.step, kind, isFromThenOn, hasFormer)
                 for kind in filter(None, arguments.kinds.split(",")) for isFromThenOn in booleans
                 for hasFormer in booleans]
        if arguments.allocations:
            total = tester.allocations()
            places = random.Random(arguments.seed)
            tasks += [pool.submit(anywhere, tester, total, places, number % 2 == 1)
                      for number in range(arguments.allocations)]
        for task in tasks:
            task.result()
    for (kind, status), count in sorted(tester.statuses.items(), key=str):
        print(f"{kind}: status {status}: {count}")
    print(f"{sum(tester.statuses.values())} runs, {len(tester.failures)} wrong, "
          f"{tester.lost} without a former file that could keep nothing")
    return 1 if tester.failures else 0


if __name__ == "__main__":
    sys.exit(main())
