// Prints what a MOF file and those that it includes declare, as JSON, for the stand-in of cimmof.
#include "register/Mof.h"

#include <nlohmann/json.hpp>

#include <iostream>

namespace {

using Json = nlohmann::json;
namespace mof = embedded::mof;

Json valueOf(const mof::Literal& literal) {
    if (literal.kind == mof::Literal::Kind::Integer)
        return std::stoi(literal.text);
    return literal.text;
}

Json valueOf(const mof::Value& value) {
    Json items = Json::array();
    for (const mof::Literal& item : value.items)
        items.push_back(valueOf(item));
    return value.isArray ? items : items.at(0);
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2)
        return 2;
    try {
        const registering::Mof mof = registering::readMofFile(argv[1]);
        Json classes = Json::array();
        for (const registering::Class& each : mof.classes)
            classes.push_back({{"name", each.name},
                               {"super", each.superclass},
                               {"version", each.version},
                               {"refs", each.references},
                               {"keys", each.keys}});
        Json instances = Json::array();
        for (const registering::Instance& each : mof.instances) {
            Json properties = Json::object();
            for (const mof::PropertyInitializer& property : each.properties)
                properties[property.name] = valueOf(property.value);
            instances.push_back({{"class", each.className}, {"properties", properties}});
        }
        std::cout << Json{
            {"qualifiers", mof.qualifiers}, {"classes", classes}, {"instances", instances}};
        return 0;
    } catch (const mof::MofError& error) {
        std::cerr << error.what() << "\n";
        return 1;
    }
}
