// At the start of a static program, the C library asks the system for the folder that the program lies in, by which it
// would find libraries that the program loads. This one loads none, and asking takes a twentieth of the time of a short
// answer; so this is linked in place of the library's function, where the linker allows it. That the folder is not
// known is told as there (glibc, elf/dl-origin.c).
extern "C" const char* _dl_get_origin() {
    return reinterpret_cast<const char*>(-1); // NOLINT(performance-no-int-to-ptr)
}
