#include "standalone/SupportStoreBuilder.hpp"

#include "standalone/JsonInput.hpp"
#include "standalone/NewFile.hpp"
#include "standalone/SupportRecords.hpp"
#include "standalone/SupportStoreWriter.hpp"
#include "standalone/Text.hpp"

#include <boost/unordered/unordered_flat_map.hpp>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <sys/stat.h>
#include <system_error>

namespace tessgen::standalone {

namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

// Reads a file, or "-" for standard input, line by line, of whatever length.
class LineReader {
public:
    explicit LineReader(const std::string& file) : file_(file == "-" ? "standard input" : file), stream_(open(file)) {
        if (!stream_) {
            fail("cannot be opened");
        }
    }
    LineReader(const LineReader&) = delete;
    LineReader& operator=(const LineReader&) = delete;
    ~LineReader() { std::free(line_); } // getline allocates it

    // The next line without its end, or nothing at the end of the file; valid until the next call.
    std::optional<std::string_view> next() {
        const auto length = getline(&line_, &capacity_, stream_.get());
        // After an error, getline may return the part of a line that was read before it.
        if (std::ferror(stream_.get()) != 0 || (length < 0 && std::feof(stream_.get()) == 0)) {
            fail("cannot be read");
        }
        if (length < 0) {
            return std::nullopt;
        }
        ++number_;
        bytes_ += static_cast<std::size_t>(length);
        std::string_view line(line_, static_cast<std::size_t>(length));
        if (number_ == 1 && line.starts_with(byteOrderMark)) {
            line.remove_prefix(byteOrderMark.size());
        }
        return line.substr(0, line.find_last_not_of("\r\n") + 1);
    }

    // Whether this is what `path` leads to.
    bool isFile(const std::string& path) const {
        struct stat read {};
        struct stat named {};
        return fstat(fileno(stream_.get()), &read) == 0 && stat(path.c_str(), &named) == 0
               && read.st_dev == named.st_dev && read.st_ino == named.st_ino;
    }

    std::uint64_t number() const { return number_; }
    // Read so far.
    std::uint64_t bytes() const { return bytes_; }
    // How an error names the current line.
    std::string place() const { return file_ + ":" + std::to_string(number_) + ":"; }

private:
    struct Close {
        void operator()(std::FILE* stream) const { static_cast<void>(stream == stdin ? 0 : std::fclose(stream)); }
    };

    static std::FILE* open(const std::string& file) { return file == "-" ? stdin : std::fopen(file.c_str(), "re"); }

    [[noreturn]] void fail(const char* what) const {
        throw std::runtime_error(file_ + ": " + what + ": " + std::generic_category().message(errno));
    }

    std::string file_;
    std::unique_ptr<std::FILE, Close> stream_;
    char* line_ = nullptr;
    std::size_t capacity_ = 0;
    std::uint64_t number_ = 0;
    std::uint64_t bytes_ = 0;
};

// The files that have a record, kept as hashes of their paths, since the paths themselves may not fit into memory.
class KnownFiles {
public:
    // The line of an earlier record of the same file, if there is one; else the file is known from now on.
    std::optional<std::uint64_t> lineOf(const std::u16string& path, std::uint64_t line, SupportStoreWriter& written) {
        const auto [known, isNew] = lines_.try_emplace(std::hash<std::u16string>()(path), line);
        if (isNew || !written.hasFile(path)) {
            return std::nullopt;
        }
        return known->second;
    }

private:
    boost::unordered_flat_map<std::size_t, std::uint64_t> lines_;
};

SupportRecord readRecord(const LineReader& lines, std::string_view line, const std::string& root) {
    try {
        return readSupportRecord(line, root);
    } catch (const JsonSyntaxError& error) {
        throw std::runtime_error(lines.place() + std::to_string(error.column) + ": " + error.what());
    } catch (const std::runtime_error& error) {
        throw std::runtime_error(lines.place() + " " + error.what());
    }
}

bool isBlank(std::string_view line) {
    return line.find_first_not_of(" \t") == std::string_view::npos;
}

} // namespace

StoreBuildProgress buildSupportStore(const std::string& records, const std::string& output, const std::string& root,
                                     const std::function<void(const StoreBuildProgress&)>& report) {
    LineReader lines(records);
    if (lines.isFile(output)) {
        throw std::runtime_error(output + ": holds the records, and the store must not replace them; "
                                 + "name another file with --output");
    }
    NewFile file(output);
    SupportStoreWriter writer(file);
    KnownFiles known;
    StoreBuildProgress progress;
    while (const auto line = lines.next()) {
        progress.bytes = lines.bytes();
        if (report) {
            report(progress);
        }
        if (isBlank(*line)) {
            continue;
        }
        const auto record = readRecord(lines, *line, root);
        if (!record.entry.isBuiltin) {
            if (const auto earlier = known.lineOf(record.entry.path, lines.number(), writer)) {
                throw std::runtime_error(lines.place() + " key \"path\": this file has a record already, on line "
                                         + std::to_string(*earlier));
            }
        }
        writer.add(record);
        ++progress.records;
    }
    writer.finish(toUTF16(root).value());
    file.replaceTarget();
    return progress;
}

} // namespace tessgen::standalone
