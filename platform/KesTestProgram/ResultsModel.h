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
template <typename Results>
class KES_EXPORT ResultsModel : public TestProgramModel {
public:
    using TestProgramModel::TestProgramModel;

    /// A copy; nothing before the first test. Any thread.
    std::optional<Results> getResults() const
    {
        std::lock_guard lock(_mutex);
        return _results;
    }

    std::optional<KesMeasure::MeasuredTest> getMeasuredTest() const override
    {
        std::lock_guard lock(_mutex);
        return _results ? std::optional<KesMeasure::MeasuredTest>(*_results) : std::nullopt;
    }

protected:
    /// Of the test that begins, with its settings. Start thread.
    virtual Results _createResults() const = 0;
    /// Under the lock, so the results alone count. Any thread.
    virtual KesMeasure::Verdict _judge(const Results& results) const = 0;
    /// As the archive holds them: the checksum is made of it.
    virtual std::string _toXml(const Results& results) const = 0;
    /// How many values have been measured. Under the lock.
    virtual std::size_t _countMeasuredIn(const Results& results) const = 0;
    /// How many the whole test of these results has. Under the lock.
    virtual std::size_t _countPlannedIn(const Results& results) const = 0;

    /// Of the run that is under way; nothing when its archive has been closed. Start thread.
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

    /// By those of another archive; the signal is left to the caller. GUI thread.
    void _replaceResults(std::optional<Results> results)
    {
        std::lock_guard lock(_mutex);
        _results = std::move(results);
    }

    std::size_t _countMeasured() const override
    {
        std::lock_guard lock(_mutex);
        return _results ? _countMeasuredIn(*_results) : 0;
    }

    std::size_t _countPlanned() const override
    {
        std::lock_guard lock(_mutex);
        return _results ? _countPlannedIn(*_results) : 0;
    }

private:
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

    void _keepResults() override
    {
        std::lock_guard lock(_mutex);
        _isRunKept = _results.has_value();
    }

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

    std::optional<KesMeasure::Verdict> _endResults(KesMeasure::RunEnd end) override
    {
        std::optional<KesMeasure::Verdict> verdict;
        _changeResults([&](Results& results) {
            results.end = end;
            verdict = _judge(results);
        });
        return verdict;
    }

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

    void _abandonResults() override
    {
        std::lock_guard lock(_mutex);
        _isRunKept = false;
    }

    mutable std::mutex _mutex;
    std::optional<Results> _results;
    /// False once the archive that a run belongs to has been closed: its results have no place any more.
    bool _isRunKept = false;
};

} // namespace KesTestProgram
