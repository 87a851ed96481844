#include "register/Record.h"

#include "register/Files.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <stdexcept>

namespace registering {
namespace {

using Json = nlohmann::json;

constexpr int format = 1;

const std::string& checked(bool isOne, const std::string& text, const char* what) {
    if (!isOne)
        throw std::runtime_error("'" + text + "' is no " + what);
    return text;
}

std::string name(const std::string& text) { return checked(isName(text), text, "name"); }

std::string nameSpace(const std::string& text) {
    return checked(isNameSpace(text), text, "namespace");
}

std::string path(const std::string& text) {
    return checked(std::filesystem::path(text).is_absolute(), text, "absolute path");
}

std::vector<std::string> all(const Json& list, std::string (*one)(const std::string&)) {
    std::vector<std::string> result;
    for (const Json& item : list)
        result.push_back(one(item.get<std::string>()));
    return result;
}

Record fromJson(const Json& json) {
    if (json.at("format") != format)
        throw std::runtime_error("it is of another version of this program");
    Record record;
    record.served = all(json.at("served"), nameSpace);
    record.nameSpaces = all(json.at("namespaces"), nameSpace);
    for (const auto& [place, classes] : json.at("classes").items())
        record.classes[nameSpace(place)] = all(classes, name);
    for (const auto& [file, text] : json.at("files").items())
        record.files[path(file)] = text.get<std::string>();
    record.directories = all(json.at("directories"), path);
    return record;
}

} // namespace

bool Record::made(const std::string& nameSpace) const { return hasName(nameSpaces, nameSpace); }

bool Record::empty() const {
    return nameSpaces.empty() && files.empty() &&
           std::all_of(
               classes.begin(), classes.end(),
               [](const auto& entry) { return entry.second.empty(); });
}

std::optional<Record> readRecord(const std::filesystem::path& file) {
    const std::optional<std::string> text = readFile(file, true);
    if (!text)
        return std::nullopt;
    try {
        return fromJson(Json::parse(*text));
    } catch (const std::exception& error) {
        throw std::runtime_error(file.string() + ": is no record of this program: " + error.what());
    }
}

std::string textOf(const Record& record) {
    Json classes = Json::object();
    for (const auto& [nameSpace, loaded] : record.classes)
        if (!loaded.empty())
            classes[nameSpace] = loaded;
    return Json{{"format", format},
                {"served", record.served},
                {"namespaces", record.nameSpaces},
                {"classes", classes},
                {"files", Json(record.files)},
                {"directories", record.directories}}
               .dump(1) +
           "\n";
}

} // namespace registering
