// Reads the status of every folder that a file names, one a line, each by its path below the folder DIRECTORY, as the
// program does. No question with the index can do less. Usage: status DIRECTORY FILE
#include <array>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

int main(int count, char** words) {
    const int file = count == 3 ? open(words[2], O_RDONLY | O_CLOEXEC) : -1;
    std::string names;
    static std::array<char, 32768> block;
    for (ssize_t size = 0; (size = read(file, block.data(), block.size())) > 0;) {
        names.append(block.data(), static_cast<std::size_t>(size));
    }
    const int top = file < 0 ? -1 : open(words[1], O_PATH | O_DIRECTORY | O_CLOEXEC);
    const auto skipped = file < 0 ? 0 : std::strlen(words[1]) + 1;
    for (std::size_t begin = 0; begin < names.size();) {
        const auto end = names.find('\n', begin);
        names[end] = '\0';
        struct stat status {};
        if (fstatat(top, &names[begin + skipped], &status, 0) != 0) {
            std::perror(&names[begin]);
            return 2;
        }
        begin = end + 1;
    }
    return file < 0 ? 2 : 0;
}
