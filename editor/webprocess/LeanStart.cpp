/// Loaded into the web engine's processes before they begin (see EngineStart). The first of them waits for as long as
/// the program runs, and most of what it has in its memory was needed once: the tables by which the loader connected
/// the engine's libraries. The processes of pages are forked from it and read again what they need.
///
/// There is nothing here but the loader's and the C library's own.
#include <link.h>
#include <sys/auxv.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>

namespace {

/// What the kernel itself lends to every process is no file.
bool isOfKernel(const dl_phdr_info &object)
{
    const unsigned long kernels = ::getauxval(AT_SYSINFO_EHDR);
    return kernels != 0 &&
           std::any_of(object.dlpi_phdr, object.dlpi_phdr + object.dlpi_phnum, [&](const ElfW(Phdr) & part) {
               return part.p_type == PT_LOAD && part.p_offset == 0 && object.dlpi_addr + part.p_vaddr == kernels;
           });
}

/// The loader has written into the code itself; to give that back would undo it.
bool hasChangedCode(const dl_phdr_info &object)
{
    for (const ElfW(Phdr) *part = object.dlpi_phdr; part != object.dlpi_phdr + object.dlpi_phnum; ++part) {
        if (part->p_type != PT_DYNAMIC) {
            continue;
        }
        const auto *entry = reinterpret_cast<const ElfW(Dyn) *>(object.dlpi_addr + part->p_vaddr);
        for (; entry->d_tag != DT_NULL; ++entry) {
            if (entry->d_tag == DT_TEXTREL || (entry->d_tag == DT_FLAGS && (entry->d_un.d_val & DF_TEXTREL) != 0)) {
                return true;
            }
        }
    }
    return false;
}

int giveBack(dl_phdr_info *object, std::size_t, void *)
{
    if (isOfKernel(*object) || hasChangedCode(*object)) {
        return 0;
    }
    const auto page = static_cast<ElfW(Addr)>(::sysconf(_SC_PAGESIZE));
    for (const ElfW(Phdr) *part = object->dlpi_phdr; part != object->dlpi_phdr + object->dlpi_phnum; ++part) {
        if (part->p_type != PT_LOAD || (part->p_flags & PF_W) != 0) {
            continue;
        }
        // Whole pages that are only this part's.
        const ElfW(Addr) begin = (object->dlpi_addr + part->p_vaddr + page - 1) & ~(page - 1);
        const ElfW(Addr) end = (object->dlpi_addr + part->p_vaddr + part->p_filesz) & ~(page - 1);
        if (begin < end) {
            ::madvise(reinterpret_cast<void *>(begin), end - begin, MADV_DONTNEED);
        }
    }
    return 0;
}

__attribute__((constructor)) void giveBackWhatTheLoaderRead()
{
    ::dl_iterate_phdr(&giveBack, nullptr);
}

} // namespace
