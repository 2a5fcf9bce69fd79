#pragma once
// What every benchmark of the module does around its measurements.

#include <QApplication>
#include <QTemporaryDir>
#include <functional>
#include <vector>

namespace zrbench {

double median(std::vector<double> values);

struct Medians
{
    double ours;
    double baseline;
};

// Times each function `rounds` times after ten rounds of warming up, interleaved, so that drift of
// the machine weighs on both alike. Each function answers the milliseconds of one round.
Medians timeInterleaved(int rounds, const std::function<double()>& ours, const std::function<double()>& baseline);


// Prints the two medians under the names of what was timed, and their ratio beside the goal.
void printMedians(const Medians& medians, const char* oursName, const char* baselineName, double goal);

// The application of one benchmark run: Qt's offscreen platform unless the caller chose one, Qt's
// debug lines and the offscreen platform's notes on what it can't do (raise a window, grab the
// keyboard) kept out of the figures, and the substitute host with a configuration of its own and
// the module loaded.
class BenchApp
{
public:
    BenchApp(int& argc, char** argv);
    ~BenchApp();
    BenchApp(const BenchApp&) = delete;
    BenchApp& operator=(const BenchApp&) = delete;

    // The integer argument at `index`, at least `least`; `fallback` when it is not given.
    int intArgument(int index, int fallback, int least) const;

private:
    static int& prepare(int& argc);

    QApplication m_app;
    QTemporaryDir m_config;
};

// Times a dialog of the module against Qt's own, each shown and rejected as soon as it is painted, and
// prints both medians and their ratio beside the goal. `rounds` is argument 1, else `defaultRounds`.
void compareDialogs(const BenchApp& app, int defaultRounds, const char* what, const char* oursName,
                    const char* baselineName, double goal, const std::function<double()>& ours,
                    const std::function<double()>& baseline);

} // namespace zrbench
