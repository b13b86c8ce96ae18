#include "standalone/manifest/Installation.hpp"

#include "standalone/files/FileKind.hpp"
#include "standalone/files/RealFileTree.hpp"
#include "standalone/json/JsonInput.hpp"
#include "standalone/json/JsonPlaces.hpp"
#include "standalone/manifest/ManifestFile.hpp"
#include "standalone/text/Hash.hpp"
#include "standalone/text/PathText.hpp"
#include "standalone/text/Text.hpp"

#include <algorithm>
#include <cstddef>
#include <stdexcept>
#include <string_view>
#include <unordered_set>
#include <utility>

namespace tessgen::standalone {

namespace {

using nlohmann::json;

const std::string& readText(const json* value, const ValuePlace& place, const char* expected) {
    const auto* text = value == nullptr ? nullptr : value->get_ptr<const std::string*>();
    if (text == nullptr || text->empty() || text->find('\0') != std::string::npos) {
        failAtKey(place.spelled(), expected, value);
    }
    return *text;
}

// `read(element, place)` of each element; empty when the key is missing. Drops each element once it is read, so that a
// long list is not held twice.
template <typename Read>
auto readList(json& object, const std::string& key, Read read) {
    std::vector<decltype(read(object, ValuePlace()))> list;
    if (const auto value = object.find(key); value != object.end()) {
        if (!value->is_array()) {
            failAtKey(key, "a list", &*value);
        }
        for (json& element : *value) {
            list.push_back(read(element, {key, list.size()}));
            element = nullptr;
        }
    }
    return list;
}

// An absolute path; a relative one is resolved against `base`. Empty when the key is missing.
std::optional<std::string> readPath(const json& manifest, const std::string& key, const std::string& base) {
    const json* value = findValue(manifest, key);
    return value == nullptr ? std::nullopt
                            : std::optional(absolutePath(readText(value, {key}, "the path of a folder or file"), base));
}

const std::string& readFolder(const json& value, const ValuePlace& place) {
    return readText(&value, place, "the path of a folder");
}

// A KEL path folder with a "/" at its end matches nothing; the "/" is kept so that the doctor can report it.
std::string readKELFolder(const json& value, const ValuePlace& place, const std::string& root) {
    const std::string& text = readFolder(value, place);
    const std::string folder = absolutePath(text, root);
    return text.ends_with('/') ? joinPath(folder, "") : folder;
}

std::vector<std::string> readSourceCodeFolder(const json& value, const ValuePlace& place, const std::string& root) {
    const std::string folder = absolutePath(readFolder(value, place), root);
    if (folder == root) {
        return {};
    }
    const std::string above = joinPath(root, "");
    if (!folder.starts_with(above)) {
        failAtKey(place.spelled(), "a folder below the root " + root, &value);
    }
    return split(std::string_view(folder).substr(above.size()), '/');
}

std::string readExtension(const json& value, const ValuePlace& place) {
    constexpr const char* expected = R"(an extension without "." before it and without "/", such as "vk")";
    const std::string& extension = readText(&value, place, expected);
    if (extension.starts_with('.') || extension.find('/') != std::string::npos) {
        failAtKey(place.spelled(), expected, &value);
    }
    return extension;
}

std::vector<std::string> readExtensions(json& manifest) {
    constexpr const char* key = "extensions";
    const json* value = findValue(manifest, key);
    if (value == nullptr) {
        return defaultExtensions();
    }
    auto extensions = readList(manifest, key, readExtension);
    if (extensions.empty()) {
        failAtKey(key, "at least one extension, since no name is found without", value);
    }
    std::unordered_set<std::string_view, TextHash> known;
    for (std::size_t index = 0; index < extensions.size(); ++index) {
        if (!known.insert(extensions[index]).second) {
            const json twice = extensions[index];
            failAtKey(ValuePlace{key, index}.spelled(), "no extension twice", &twice);
        }
    }
    return extensions;
}

// The host reports built-ins in a line of text, where white space has a meaning; names with "." or "/" are never looked
// up among built-ins.
std::u16string readPlainName(const json* value, const ValuePlace& place, const std::string& expected) {
    const auto plain = expected + R"(, a plain name without white space, "." and "/")";
    const std::string& name = readText(value, place, plain.c_str());
    const auto isRefused = [](unsigned char c) { return c <= ' ' || c == '.' || c == '/'; };
    if (std::any_of(name.begin(), name.end(), isRefused)) {
        failAtKey(place.spelled(), plain, value);
    }
    return toUTF16(name).value();
}

Builtin readBuiltin(const json& value, const ValuePlace& at) {
    const std::string place = at.spelled();
    if (!value.is_object()) {
        failAtKey(place, R"(an object such as {"name": "sum"})", &value);
    }
    refuseUnknownKeys(value, {"name", "class", "constructor"}, place + ".");
    Builtin builtin;
    builtin.name = readPlainName(findValue(value, "name"), {place + ".name"}, "the name of a built-in");
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
        builtin.className = readPlainName(className, {place + ".class"}, expected);
    }
    return builtin;
}

// No file below the support-package root is a user's, so the whole root must not lie there.
void refuseClashes(const Installation& read, const json& manifest) {
    if (const auto& packages = read.supportPackageRoot) {
        if (joinPath(read.root, "").starts_with(joinPath(*packages, ""))) {
            failAtKey("supportPackageRoot", "a folder that root (" + read.root + ") does not lie in",
                      findValue(manifest, "supportPackageRoot"));
        }
    }
    if (read.supportStore == read.manifest) {
        failAtKey("supportStore", "another file than the manifest", findValue(manifest, "supportStore"));
    }
    if (read.searchIndex && (read.searchIndex == read.manifest || read.searchIndex == read.supportStore)) {
        failAtKey("searchIndex", "another file than the manifest and the support store",
                  findValue(manifest, "searchIndex"));
    }
}

Installation readManifest(json manifest, const std::string& path) {
    if (!manifest.is_object()) {
        failAtKey("", "an object with the keys of a manifest", &manifest);
    }
    refuseUnknownKeys(manifest, {"$schema", "root", "supportPackageRoot", "supportStore", "searchIndex", "searchPath",
                                 "kelPath", "sourceCode", "extensions", "builtins"});
    if (const json* schema = findValue(manifest, "$schema")) {
        readText(schema, {"$schema"}, "the place of the manifest's schema");
    }
    const std::string folder = absolutePath("..", path);
    Installation result;
    result.manifest = path;
    result.root = readPath(manifest, "root", folder).value_or(folder);
    result.supportPackageRoot = readPath(manifest, "supportPackageRoot", folder);
    result.supportStore = readPath(manifest, "supportStore", folder);
    result.searchIndex = readPath(manifest, "searchIndex", folder);
    refuseClashes(result, manifest);

    const auto& root = result.root;
    result.searchPath = readList(manifest, "searchPath", [&root](const json& value, const ValuePlace& place) {
        return absolutePath(readFolder(value, place), root);
    });
    result.kelPath = readList(manifest, "kelPath", [&root](const json& value, const ValuePlace& place) {
        return readKELFolder(value, place, root);
    });
    result.sourceCode = readList(manifest, "sourceCode", [&root](const json& value, const ValuePlace& place) {
        return readSourceCodeFolder(value, place, root);
    });
    result.extensions = readExtensions(manifest);
    result.builtins = readList(manifest, "builtins", readBuiltin);
    for (const auto& setting : manifest.items()) {
        result.given.push_back(setting.key());
    }
    return result;
}

std::runtime_error errorAt(TextPlace place, const ManifestFile& file, const std::runtime_error& error) {
    return std::runtime_error(file.path + ":" + std::to_string(place.line) + ":" + std::to_string(place.column) + ": "
                              + error.what() + noteOnKind(file.path, "a manifest"));
}

} // namespace

std::vector<std::string> sourceCodePaths(const Installation& installation) {
    std::vector<std::string> paths;
    for (const auto& components : installation.sourceCode) {
        std::string path = installation.root;
        for (const auto& component : components) {
            path = joinPath(path, component);
        }
        paths.push_back(std::move(path));
    }
    return paths;
}

std::vector<std::string> defaultExtensions() {
    return {"vk", "vkx"};
}

Installation readInstallation(const std::string& fileOrFolder) {
    // More than any installation needs; a wrong file then costs at most four times its size.
    constexpr JsonLimits limits{.values = 100'000, .run = std::size_t{1} << 16U};
    const ManifestFile file = readManifestFile(fileOrFolder);
    try {
        return readManifest(parseJson(file.text, limits), file.path);
    } catch (const JsonSyntaxError& error) {
        throw errorAt({error.line, error.column}, file, error);
    } catch (const JsonKeyError& error) {
        const auto find = error.isUnknownKey ? placeOfItsKey : placeOfValue;
        throw errorAt(lineAndColumn(file.text, find(file.text, error.place)), file, error);
    }
}

void requireFolder(const Installation& installation, std::string_view key, const std::string& folder) {
    if (RealFileTree().kindOf(folder) != FileTree::Kind::folder) {
        throw std::runtime_error(installation.manifest + ": key \"" + std::string(key) + "\": there is no folder "
                                 + folder + ": make it, or say where it is");
    }
}

} // namespace tessgen::standalone
