#include "cimhost/ConfigFiles.h"

#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <utility>

namespace embedded::cimhost {
namespace {

using Values = std::vector<std::string>;

// CLI11 takes from a file only what the command line has not given, so it does not see the options
// that can be repeated: they are added to here.
class ConfigFiles : public CLI::ConfigBase {
  public:
    explicit ConfigFiles(CLI::App& app) : _app(app) {}

    // CLI11 calls this once for each file, in an order that depends on its version: the first call
    // reads all files.
    std::vector<CLI::ConfigItem> from_config(std::istream& /*text*/) const override {
        Found found;
        if (!std::exchange(_read, true))
            for (const std::string& file : _app.get_config_ptr()->results())
                read(file, found);
        for (auto& [option, values] : found.repeated) {
            append(values, option->results());
            option->clear();
            option->add_result(std::move(values));
        }
        std::vector<CLI::ConfigItem> single;
        for (auto& [name, item] : found.single)
            single.push_back(std::move(item));
        return single;
    }

  private:
    struct Found {
        std::map<std::string, CLI::ConfigItem> single; ///< of the last file that has them
        std::map<CLI::Option*, Values> repeated;
    };

    void read(const std::filesystem::path& file, Found& found) const {
        std::ifstream text(file);
        if (!text)
            throw CLI::FileError::Missing(file.string());
        std::set<std::string> here;
        for (CLI::ConfigItem& item : ConfigBase::from_config(text)) {
            CLI::Option& option = named(item, file);
            if (option.get_expected_min() != 0)
                for (std::string& value : item.inputs)
                    value = resolved(value, option.get_type_name(), file.parent_path());
            if (option.get_multi_option_policy() == CLI::MultiOptionPolicy::TakeAll)
                append(found.repeated[&option], item.inputs);
            else if (!here.insert(item.name).second || item.inputs.size() != 1)
                throw CLI::ConfigError(file.string() + ": " + item.name +
                                       " can be given once; quote a value with spaces or commas");
            else
                found.single[item.name] = std::move(item);
        }
    }

    CLI::Option& named(const CLI::ConfigItem& item, const std::filesystem::path& file) const {
        CLI::Option* const option =
            item.parents.empty() ? _app.get_option_no_throw("--" + item.name) : nullptr;
        if (option == nullptr || !option->get_configurable())
            throw CLI::ConfigError(file.string() + ": no option of a configuration file: " +
                                   (item.parents.empty() ? item.name : item.parents.front()));
        return *option;
    }

    static std::string resolved(const std::string& value, const std::string& type,
                                const std::filesystem::path& directory) {
        const std::size_t path = type == "NAMESPACE=FILE" ? value.find('=') + 1 : 0;
        const bool isPath = type == "FILE" || type == "DIR" || path != 0;
        if (!isPath || path == value.size() || value == "-") // "-": no file, but a stream
            return value;
        return value.substr(0, path) + (directory / value.substr(path)).string();
    }

    static void append(Values& values, const Values& more) {
        values.insert(values.end(), more.begin(), more.end());
    }

    CLI::App& _app;
    mutable bool _read = false;
};

} // namespace

void declareConfigFiles(CLI::App& app) {
    app.set_config(
           "--config", "",
           "Read options from FILE, NAME = VALUE a line, as if they stood before those of the "
           "command line (repeatable, in order)")
        ->type_name("FILE")
        ->expected(1)
        ->take_all();
    app.config_formatter(std::make_shared<ConfigFiles>(app));
}

} // namespace embedded::cimhost
