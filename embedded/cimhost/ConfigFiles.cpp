#include "cimhost/ConfigFiles.h"

#include <algorithm>
#include <filesystem>
#include <map>

namespace embedded::cimhost {
namespace {

using Values = std::vector<std::string>;

// CLI11 reads the last file first, and takes from a file only what neither the command line nor a
// later file has given. So it does not see the options that can be repeated: they are added to
// here.
class ConfigFiles : public CLI::ConfigBase {
  public:
    explicit ConfigFiles(CLI::App& app) : _app(app) {}

    std::vector<CLI::ConfigItem> from_config(std::istream& text) const override {
        const Values files = _app.get_config_ptr()->results();
        const std::filesystem::path file = files.at(files.size() - ++_read);
        std::vector<CLI::ConfigItem> single;
        std::map<CLI::Option*, Values> repeated;
        for (CLI::ConfigItem& item : ConfigBase::from_config(text)) {
            CLI::Option& option = named(item, file);
            if (option.get_expected_min() != 0)
                for (std::string& value : item.inputs)
                    value = resolved(value, option.get_type_name(), file.parent_path());
            if (option.get_multi_option_policy() == CLI::MultiOptionPolicy::TakeAll)
                append(repeated[&option], item.inputs);
            else if (has(single, item.name) || item.inputs.size() != 1)
                throw CLI::ConfigError(file.string() + ": " + item.name +
                                       " can be given once; quote a value with spaces or commas");
            else
                single.push_back(std::move(item));
        }
        for (auto& [option, values] : repeated) {
            append(values, option->results());
            option->clear();
            option->add_result(std::move(values));
        }
        return single;
    }

  private:
    CLI::Option& named(const CLI::ConfigItem& item, const std::filesystem::path& file) const {
        CLI::Option* const option =
            item.parents.empty() ? _app.get_option_no_throw("--" + item.name) : nullptr;
        if (option == nullptr || !option->get_configurable())
            throw CLI::ConfigError(file.string() +
                                   ": no option of a configuration file: " + item.fullname());
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

    static bool has(const std::vector<CLI::ConfigItem>& items, const std::string& name) {
        return std::any_of(
            items.begin(), items.end(),
            [&](const CLI::ConfigItem& item) { return item.name == name; });
    }

    static void append(Values& values, const Values& more) {
        values.insert(values.end(), more.begin(), more.end());
    }

    CLI::App& _app;
    mutable std::size_t _read = 0; // files
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
