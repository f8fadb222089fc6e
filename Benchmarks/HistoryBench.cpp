// What the history of all conversations costs: the first index beside a bare reading of the same bytes, a start with
// nothing or little changed, a search with every key that is typed, and following a transcript that grows.

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdlib>

#include "History/BareReader.h"
#include "History/Following.h"
#include "History/MadeTranscripts.h"
#include "Orvane/History/HistoryService.h"
#include "Platform/AsioMainLoop.h"
#include "Platform/SerialQueue.h"
#include "Support/Report.h"
#include "Support/Statistics.h"
#include "Support/TemporaryEnvironment.h"

namespace orvane::benchmark {

namespace {

using Milliseconds = std::chrono::milliseconds;

constexpr double mostTimesColdReading = 1.5;
constexpr double mostTimesWarmReading = 4;
constexpr double mostWarmStart = 150;
constexpr double mostKeystroke = 5;
constexpr double mostSearchMegabytes = 60;

struct Settings {
    std::size_t files = 10000;
    std::size_t fileSize = 512 * 1024;
    int runs = 3;
    std::size_t longFileSize = std::size_t{500} << 20;
    int checks = 500;
};

/// A result that is wrong would make its time worthless.
void expect(bool condition, std::string_view what) {
    if (condition) return;
    fmt::print(stderr, "history-bench: {}\n", what);
    std::exit(EXIT_FAILURE);
}

/// A service as the host has it, from its start until the list is there.
class Start {
 public:
    explicit Start(const std::string& home) : home_(home) {}

    double milliseconds(std::size_t records, std::size_t filesRead) {
        const double time = timeOf<Milliseconds>([this] {
            service_ = std::make_shared<HistoryService>(HistoryService::Services{.loop = loop_,
                                                                                 .pool = pool_,
                                                                                 .fileQueue = queue_,
                                                                                 .home = home_,
                                                                                 .indexPath = home_ + "/history.json"});
            service_->refresh([this] { loop_.stop(); });
            loop_.run();
        });
        expect(service_->records().size() == records, "the history has other conversations than were made");
        expect(service_->filesRead() == filesRead, "another number of transcripts was read");
        return time;
    }

    const std::vector<SessionRecord>& records() const { return service_->records(); }

 private:
    std::string home_;
    AsioMainLoop loop_;
    BackgroundPool pool_;
    SerialQueue queue_{pool_};
    std::shared_ptr<HistoryService> service_;
};

void reportTimes(const std::string& name, double time, double bare, double atMost) {
    report({.name = name + ", bare reading", .values = fmt::format("{:.0f}", bare), .unit = "ms"});
    report({.name = name + ", first index", .values = fmt::format("{:.0f}", time), .unit = "ms"});
    report({.name = name + ", to bare reading",
            .values = fmt::format("{:.2f}", time / bare),
            .unit = "times",
            .value = time / bare,
            .atMost = atMost});
}

enum class Cache { cold, warm };

void measureFirstIndex(const Settings& settings, const MadeTranscripts& made, Cache cache) {
    std::vector<double> bare;
    std::vector<double> index;
    for (int run = 0; run < settings.runs; ++run) {
        if (cache == Cache::cold) made.dropFromCache();
        bare.push_back(timeOf<Milliseconds>(
            [&] { expect(readEnds(made.home(), BackgroundPool::defaultThreadCount()) > 0, "nothing was read"); }));
        std::filesystem::remove(made.home() + "/history.json");
        if (cache == Cache::cold) made.dropFromCache();
        index.push_back(Start(made.home()).milliseconds(made.count(), made.count()));
    }
    const bool isCold = cache == Cache::cold;
    reportTimes(isCold ? "page cache dropped" : "page cache warm", summary(index).minimum, summary(bare).minimum,
                isCold ? mostTimesColdReading : mostTimesWarmReading);
}

void measureStarts(const Settings& settings, MadeTranscripts& made) {
    std::vector<double> unchanged;
    std::vector<double> changed;
    for (int run = 0; run < settings.runs; ++run) {
        unchanged.push_back(Start(made.home()).milliseconds(made.count(), 0));
        made.growOne();
        changed.push_back(Start(made.home()).milliseconds(made.count(), 1));
    }
    const auto reportStart = [](const char* name, const std::vector<double>& samples, std::optional<double> atMost) {
        const Summary times = summary(samples);
        report({.name = name,
                .values = fmt::format("min {:.0f}  median {:.0f}", times.minimum, times.median),
                .unit = "ms",
                .value = times.minimum,
                .atMost = atMost});
    };
    reportStart("a start with nothing changed", unchanged, mostWarmStart);
    reportStart("a start with one file changed", changed, std::nullopt);
}

void measureSearch(const std::vector<SessionRecord>& records) {
    std::optional<HistorySearch> search;
    const double folding = timeOf<Milliseconds>([&] { search.emplace(records, "en"); });
    std::vector<double> times;
    std::size_t found = 0;
    for (const std::string typed :
         {"mend the parser", "login", "nothing has these words", "e a i o", "project 7 test"}) {
        for (std::size_t length = 1; length <= typed.size(); ++length)
            times.push_back(
                timeOf<Milliseconds>([&] { found += search->find({.text = typed.substr(0, length)}).size(); }));
    }
    expect(found > 0, "nothing was found");
    std::ranges::sort(times);
    const double p99 = times[times.size() * 99 / 100];
    report({.name = fmt::format("a key of a search in {} records", records.size()),
            .values = fmt::format("p50 {:.2f}  p99 {:.2f}", times[times.size() / 2], p99),
            .unit = "ms",
            .value = p99,
            .atMost = mostKeystroke});
    const double megabytes = static_cast<double>(search->byteSize()) / (1 << 20);
    report({.name = "its memory",
            .values = fmt::format("{:.1f}", megabytes),
            .unit = "MB",
            .value = megabytes,
            .atMost = mostSearchMegabytes});
    report({.name = "folding the records once", .values = fmt::format("{:.1f}", folding), .unit = "ms"});
}

void measure(const Settings& settings) {
    const TemporaryEnvironment environment;
    MadeTranscripts made(environment.folder(), settings.files, settings.fileSize);
    fmt::print("{} transcripts of {} KB; between head and tail they are holes, which nobody reads\n", settings.files,
               settings.fileSize / 1024);
    measureFirstIndex(settings, made, Cache::cold);
    measureFirstIndex(settings, made, Cache::warm);
    measureStarts(settings, made);
    Start start(made.home());
    start.milliseconds(made.count(), 0);
    measureSearch(start.records());
    measureFollowing(settings.longFileSize, settings.checks);
}

}  // namespace

}  // namespace orvane::benchmark

int main(int argc, char** argv) try {
    using namespace orvane::benchmark;
    bool isQuick = false;
    Settings settings;
    CLI::App app("Measures the history of past conversations.");
    app.add_flag("--quick", isQuick, "A few small files, to see that it works");
    app.add_option("--files", settings.files, "How many transcripts")->check(CLI::PositiveNumber);
    CLI11_PARSE(app, argc, argv);
    if (isQuick) settings = {.files = 50, .fileSize = 300 * 1024, .runs = 1, .longFileSize = 8 << 20, .checks = 5};
    measure(settings);
    return 0;
} catch (const std::exception& exception) {
    std::fputs(exception.what(), stderr);
    return 1;
}
