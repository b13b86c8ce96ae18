#include "standalone/Installation.hpp"

#include "standalone/FileTree.hpp"
#include "standalone/JsonInput.hpp"
#include "standalone/ManifestFile.hpp"
#include "standalone/PathText.hpp"
#include "standalone/Text.hpp"

#include <cstddef>
#include <stdexcept>
#include <string_view>

namespace tessgen::standalone {

namespace {

using nlohmann::json;

const std::string& readText(const json* value, const std::string& place, const char* expected) {
    const auto* text = value == nullptr ? nullptr : value->get_ptr<const std::string*>();
    if (text == nullptr || text->empty() || text->find('\0') != std::string::npos) {
        failAtKey(place, expected, value);
    }
    return *text;
}

// What `read(element, place)` makes of each element; empty when the key is not given.
template <typename Read>
auto readList(const json& object, const std::string& key, Read read) {
    std::vector<decltype(read(object, key))> list;
    if (const json* value = findValue(object, key)) {
        if (!value->is_array()) {
            failAtKey(key, "a list", value);
        }
        for (const json& element : *value) {
            list.push_back(read(element, key + "[" + std::to_string(list.size()) + "]"));
        }
    }
    return list;
}

// A folder or file, absolute; a relative one is meant in `base`. Nothing when the key is not given.
std::optional<std::string> readPath(const json& manifest, const std::string& key, const std::string& base) {
    const json* value = findValue(manifest, key);
    return value == nullptr ? std::nullopt
                            : std::optional(absolutePath(readText(value, key, "the path of a folder or file"), base));
}

const std::string& readFolder(const json& value, const std::string& place) {
    return readText(&value, place, "the path of a folder");
}

// A KEL path folder with a "/" at its end matches nothing; it stays so that this can be found out.
std::string readKELFolder(const json& value, const std::string& place, const std::string& root) {
    const std::string& text = readFolder(value, place);
    const std::string folder = absolutePath(text, root);
    return text.ends_with('/') ? joinPath(folder, "") : folder;
}

std::vector<std::string> readSourceCodeFolder(const json& value, const std::string& place, const std::string& root) {
    const std::string folder = absolutePath(readFolder(value, place), root);
    if (folder == root) {
        return {};
    }
    const std::string above = joinPath(root, "");
    if (!folder.starts_with(above)) {
        failAtKey(place, "a folder below the root " + root, &value);
    }
    return split(std::string_view(folder).substr(above.size()), '/');
}

std::string readExtension(const json& value, const std::string& place) {
    constexpr const char* expected = R"(an extension without "." before it and without "/", such as "vk")";
    const std::string& extension = readText(&value, place, expected);
    if (extension.starts_with('.') || extension.find('/') != std::string::npos) {
        failAtKey(place, expected, &value);
    }
    return extension;
}

Builtin readBuiltin(const json& value, const std::string& place) {
    if (!value.is_object()) {
        failAtKey(place, R"(an object such as {"name": "sum"})", &value);
    }
    refuseUnknownKeys(value, {"name", "class", "constructor"}, place + ".");
    Builtin builtin;
    builtin.name = toUTF16(readText(findValue(value, "name"), place + ".name", "the name of a built-in")).value();
    if (const json* constructor = findValue(value, "constructor")) {
        if (!constructor->is_boolean()) {
            failAtKey(place + ".constructor", "true or false", constructor);
        }
        builtin.constructor = constructor->get<bool>();
    }
    const json* className = findValue(value, "class");
    if (className != nullptr || builtin.constructor) {
        const char* expected =
            builtin.constructor ? "the class that the constructor makes" : "the class that the method is of";
        builtin.className = toUTF16(readText(className, place + ".class", expected)).value();
    }
    return builtin;
}

Installation readManifest(const json& manifest, const std::string& path) {
    if (!manifest.is_object()) {
        throw std::runtime_error(std::string("expected an object with the keys of a manifest, found ")
                                 + manifest.type_name());
    }
    refuseUnknownKeys(manifest, {"$schema", "root", "supportPackageRoot", "supportStore", "searchPath", "kelPath",
                                 "sourceCode", "extensions", "builtins"});
    if (const json* schema = findValue(manifest, "$schema")) {
        readText(schema, "$schema", "the place of the manifest's schema");
    }
    const std::string folder = absolutePath("..", path);
    Installation result;
    result.manifest = path;
    result.root = readPath(manifest, "root", folder).value_or(folder);
    result.supportPackageRoot = readPath(manifest, "supportPackageRoot", folder);
    result.supportStore = readPath(manifest, "supportStore", folder);

    const auto& root = result.root;
    result.searchPath = readList(manifest, "searchPath", [&root](const json& value, const std::string& place) {
        return absolutePath(readFolder(value, place), root);
    });
    result.kelPath = readList(manifest, "kelPath", [&root](const json& value, const std::string& place) {
        return readKELFolder(value, place, root);
    });
    result.sourceCode = readList(manifest, "sourceCode", [&root](const json& value, const std::string& place) {
        return readSourceCodeFolder(value, place, root);
    });
    result.extensions = findValue(manifest, "extensions") == nullptr ? std::vector<std::string>{"vk", "vkx"}
                                                                     : readList(manifest, "extensions", readExtension);
    result.builtins = readList(manifest, "builtins", readBuiltin);
    return result;
}

} // namespace

Installation readInstallation(const std::string& fileOrFolder) {
    const ManifestFile file = readManifestFile(fileOrFolder);
    try {
        return readManifest(parseJson(file.text), file.path);
    } catch (const JsonSyntaxError& error) {
        throw std::runtime_error(file.path + ":" + std::to_string(error.line) + ":" + std::to_string(error.column)
                                 + ": " + error.what());
    } catch (const std::runtime_error& error) {
        throw std::runtime_error(file.path + ": " + error.what());
    }
}

void requireFolder(const Installation& installation, std::string_view key, const std::string& folder) {
    if (RealFileTree().kindOf(folder) != FileTree::Kind::folder) {
        throw std::runtime_error(installation.manifest + ": key \"" + std::string(key) + "\": there is no folder "
                                 + folder + ": make it, or say where it is");
    }
}

} // namespace tessgen::standalone
