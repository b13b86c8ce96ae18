// The array handles of the small host, for a caller of the gateway.
#pragma once

#include <matrix/array.hpp>
#include <zelt/enumeration.hpp>

#include <cstddef>
#include <string>
#include <vector>

class zelt::internal::InternedText {
public:
    std::string text;
    friend auto operator<=>(const InternedText&, const InternedText&) = default;
};

struct qxArray {
    enum class Type { Characters, Cell, String, Enumeration };

    qxArray(Type itsType, std::size_t itsRows, std::size_t itsColumns)
        : type(itsType), rows(itsRows), columns(itsColumns) {
        ++alive;
    }
    qxArray(const qxArray&) = delete;
    qxArray& operator=(const qxArray&) = delete;
    ~qxArray() { --alive; }

    static inline std::size_t alive = 0; // so that a caller can see that none is left over

    Type type;
    std::size_t rows;
    std::size_t columns;
    unsigned references = 1;
    std::vector<std::u16string> texts;             // of every type but Enumeration
    std::vector<zelt::internal::Interned> members; // of an Enumeration
};

matrix::ArrayPtr makeText(const std::u16string& text);
