#include "resolver/Predicates.hpp"

#include "host/Paths.hpp"

#include <algorithm>
#include <string>

namespace tessgen::kelwhich {

namespace {

bool isPlainName(const std::u16string& name) {
    return std::none_of(name.begin(), name.end(), [](char16_t unit) { return unit == u'/' || unit == u'.'; });
}

} // namespace

bool isBuiltinOrSourceFile(const WhichResult& result) {
    if (isBuiltin(result)) {
        return true;
    }
    const auto extension = fileExtension(result.path);
    return equal(extension, u"vk") || equal(extension, u"vkx");
}

Explanation::Definition definitionBy(const WhichResult& result, const std::u16string& name) {
    using Definition = Explanation::Definition;
    if (result.type == WhichResultType::ORVAKBuiltinMethod) {
        return isPlainName(name) ? Definition::hostMethod : Definition::direct;
    }
    return isBuiltin(result) ? Definition::direct : definitionAt(result.path, name);
}

Explanation::Definition definitionAt(const std::u16string& path, const std::u16string& name) {
    using Definition = Explanation::Definition;
    if (!isPlainName(name)) {
        return Definition::direct;
    }
    if (!definesPlainName(path, name)) {
        return Definition::otherName;
    }
    const auto classFolder = getClassFolderInfo(path);
    return classFolder && !equal(classFolder->className, name) ? Definition::otherClass : Definition::direct;
}

} // namespace tessgen::kelwhich
