#pragma once

#include <KesTestProgram/TestProgramModel.h>

#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <utility>

namespace KesTestProgram {

/// Keeps the results of a test program, of the type that the program needs: one derived from
/// `KesMeasure::MeasuredTest`. The run changes them, all others read copies.
///
/// A run makes new results (`_createResults`) or continues with those that there are, puts in each value as it
/// is measured (`_changeResults`), and ends with a verdict (`_judge`). `signalResultsChanged` follows each of
/// these changes, on the thread that made it and after the lock has been let go of. When the archive that the
/// results belong to is closed during the run, what the run still measures is dropped: it must not get into
/// another file.
///
/// The lock is not recursive: a hook that may be called under it asks its argument, and nothing of this
/// class.
template <typename Results>
class KES_EXPORT ResultsModel : public TestProgramModel {
public:
    using TestProgramModel::TestProgramModel;

    /// A copy; nothing before the first test, and for an archive without results. Any thread, but not under
    /// the lock, as all that is public here.
    std::optional<Results> getResults() const
    {
        std::lock_guard lock(_mutex);
        return _results;
    }

    /// What every test has of them. Any thread.
    std::optional<KesMeasure::MeasuredTest> getMeasuredTest() const override
    {
        std::lock_guard lock(_mutex);
        return _results ? std::optional<KesMeasure::MeasuredTest>(*_results) : std::nullopt;
    }

protected:
    /// Those of the test that begins: its settings, and no values yet. End and circumstances are put in
    /// afterwards. Start thread.
    virtual Results _createResults() const = 0;
    /// What the results alone mean, with the settings that they were measured with. Any thread, perhaps under
    /// the lock.
    virtual KesMeasure::Verdict _judge(const Results& results) const = 0;
    /// As the archive holds them: the checksum is made of it, so that equal results have to give equal text.
    /// Not under the lock.
    virtual std::string _toXml(const Results& results) const = 0;
    /// How many values have been measured. Under the lock.
    virtual std::size_t _countMeasuredIn(const Results& results) const = 0;
    /// How many the whole test of these results has. Under the lock.
    virtual std::size_t _countPlannedIn(const Results& results) const = 0;

    /// Changes the results of the run that is under way, under the lock; does nothing when their archive has
    /// been closed. Start thread.
    void _changeResults(const std::function<void(Results&)>& change)
    {
        {
            std::lock_guard lock(_mutex);
            if (!_isRunKept || !_results)
                return;
            change(*_results);
        }
        signalResultsChanged.emit();
    }

    /// By those of another archive, or by none; the signal is left to the caller, who replaces more than the
    /// results. GUI thread.
    void _replaceResults(std::optional<Results> results)
    {
        std::lock_guard lock(_mutex);
        _results = std::move(results);
    }

    /// 0 without results, as the next one. Any thread.
    std::size_t _countMeasured() const override
    {
        std::lock_guard lock(_mutex);
        return _results ? _countMeasuredIn(*_results) : 0;
    }

    /// Of the test that the results belong to, which may be another than the present settings make.
    std::size_t _countPlanned() const override
    {
        std::lock_guard lock(_mutex);
        return _results ? _countPlannedIn(*_results) : 0;
    }

private:
    /// Only now, when the devices are ready, are the results of the test before given up.
    void _beginResults(const KesMeasure::MeasuredTest& test) override
    {
        Results results = _createResults();
        static_cast<KesMeasure::MeasuredTest&>(results) = test;
        {
            std::lock_guard lock(_mutex);
            _results = std::move(results);
            _isRunKept = true;
        }
        signalResultsChanged.emit();
    }

    /// Without results nothing belongs to the run.
    void _keepResults() override
    {
        std::lock_guard lock(_mutex);
        _isRunKept = _results.has_value();
    }

    /// False when the archive has been closed since `_keepResults`, or there was nothing to keep.
    bool _resumeResults(const KesMeasure::MeasuredTest& test) override
    {
        bool isKept = false;
        _changeResults([&](Results& results) {
            results.end = test.end;
            results.continuedAt = test.startedAt;
            isKept = true;
        });
        return isKept;
    }

    /// End and verdict change in one step; nothing when the archive has been closed.
    std::optional<KesMeasure::Verdict> _endResults(KesMeasure::RunEnd end) override
    {
        std::optional<KesMeasure::Verdict> verdict;
        _changeResults([&](Results& results) {
            results.end = end;
            verdict = _judge(results);
        });
        return verdict;
    }

    /// All from one copy, so that verdict and checksum belong together. Results that were changed by hand get
    /// no checksum.
    void _summarizeResults(KesMeasure::TestSummary& summary) const override
    {
        const auto results = getResults();
        if (!results)
            return;
        summary.verdict = _judge(*results);
        summary.circumstances = *results;
        if (!results->foreignChecksum)
            summary.checksum = results->getChecksum(_toXml(*results));
    }

    /// The results stay until others replace them, but the run has no access to them any more.
    void _abandonResults() override
    {
        std::lock_guard lock(_mutex);
        _isRunKept = false;
    }

    /// Guards the two below.
    mutable std::mutex _mutex;
    std::optional<Results> _results;
    /// False once the archive that a run belongs to has been closed: its results have no place any more.
    bool _isRunKept = false;
};

} // namespace KesTestProgram
