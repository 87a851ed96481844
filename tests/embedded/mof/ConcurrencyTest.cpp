// Readings share nothing: threads read at the same time, each its own text.
#include "Read.h"
#include "Sample.h"

#include <thread>

using namespace embedded::mof;

TEST(MofConcurrency, ThreadsReadGoodAndBadTextsAtTheSameTime) {
    constexpr int threads = 4;
    constexpr int rounds = 50;
    std::vector<int> right(threads);
    std::vector<std::thread> readers;
    for (int t = 0; t < threads; ++t) {
        readers.emplace_back([&right, t] {
            const std::string own = "A_Thread" + std::to_string(t);
            for (int i = 0; i < rounds; ++i) {
                const auto read = readText(sampleText + "class " + own + " {};", own);
                const auto& last = std::get<ClassDeclaration>(read.back().what);
                const std::string bad = refusal("class " + own + " { " + own + " }");
                right[static_cast<std::size_t>(t)] +=
                    last.name == own && *last.where.file == own &&
                    bad == "t.mof:1:29: unexpected '}', expected 'ref'";
            }
        });
    }
    for (std::thread& reader : readers)
        reader.join();
    EXPECT_EQ(right, std::vector<int>(threads, rounds));
}
