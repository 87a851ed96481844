// Readers and writers at once: no reader sees half of anything. Meant for a thread sanitizer too.
#include "Fixture.h"

#include <atomic>
#include <thread>

namespace embedded::repository {

using namespace Pegasus;

namespace {

constexpr int rounds = 100;
constexpr std::size_t many = 200;

class ConcurrencyTest : public RepositoryTest {
  protected:
    ConcurrencyTest() {
        load("class Pair { [Key] string Id; uint32 Left; uint32 Right; };"
             "instance of Pair { Id = \"shared\"; Left = 0; Right = 0; };");
    }

    CIMInstance pair(const std::string& id, Uint32 value) const {
        CIMInstance instance("Pair");
        instance.addProperty(CIMProperty("Id", CIMValue(String(id.c_str()))));
        instance.addProperty(CIMProperty("Left", CIMValue(value)));
        instance.addProperty(CIMProperty("Right", CIMValue(value)));
        const std::string path = "Pair.Id=\"" + id + "\"";
        instance.setPath(CIMObjectPath(String(path.c_str())));
        return instance;
    }

    void modify() {
        for (Uint32 i = 1; i <= rounds; ++i)
            repository.modifyInstance(home, pair("shared", i), CIMPropertyList());
    }
    void createAndDelete(const std::string& id) {
        for (Uint32 i = 0; i < rounds; ++i) {
            repository.createInstance(home, pair(id, i));
            repository.deleteInstance(home, pair(id, i).getPath());
        }
    }
    void loadClasses() {
        for (int i = 0; i < rounds / 10; ++i) {
            const std::string name = std::to_string(i);
            load("class Under" + name + " : Pair {}; class Twin" + name + " : Pair {};");
        }
    }
    /// Both halves of every pair are the same, as they were written together.
    bool pairsAreWhole(const View& view) const {
        const InstanceList pairs = view.instances(home, "Pair");
        bool whole = pairs.size() > many;
        for (std::size_t i = 0; whole && i < pairs.size(); ++i) {
            const CIMInstance each = pairs[i].instance();
            whole = each.getProperty(1).getValue() == each.getProperty(2).getValue() &&
                    view.getInstance(home, pairs[i].path()).path() == each.getPath();
        }
        return whole;
    }

    std::atomic<bool> writing{true};
    std::atomic<int> faults{0};
};

TEST_F(ConcurrencyTest, ReadersSeeWholeInstancesAndWholeLoads) {
    for (std::size_t i = 0; i < many; ++i)
        repository.createInstance(home, pair(std::to_string(i), 0));
    const auto read = [&] {
        while (writing) {
            const View view = repository.view();
            const bool whole = pairsAreWhole(view) &&
                               view.subClassNames(home, "Pair", true).size() % 2 == 0 &&
                               view.getClass(home, "Pair").getPropertyCount() == 3;
            faults += whole ? 0 : 1;
        }
    };
    std::vector<std::thread> readers;
    readers.emplace_back(read);
    readers.emplace_back(read);
    std::vector<std::thread> writers;
    writers.emplace_back([&] { modify(); });
    writers.emplace_back([&] { createAndDelete("first"); });
    writers.emplace_back([&] { createAndDelete("second"); });
    writers.emplace_back([&] { loadClasses(); });
    for (std::thread& each : writers)
        each.join();
    writing = false;
    for (std::thread& each : readers)
        each.join();
    EXPECT_EQ(faults, 0);
    EXPECT_EQ(valueOf("Pair.Id=\"shared\"", "Left"), std::to_string(rounds));
    EXPECT_EQ(repository.view().instances(home, "Pair").size(), many + 1);
}

} // namespace
} // namespace embedded::repository
