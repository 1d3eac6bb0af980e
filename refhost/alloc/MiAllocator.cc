// Process-wide allocator: every program links this object so that its operator new and delete
// replace the C++ runtime's and route through mimalloc.
#include <cstddef>
#include <new>

#if defined(NODEDESK_USE_MIMALLOC)
#include <mimalloc.h>

void* operator new(std::size_t n) { return mi_new(n); }
void* operator new[](std::size_t n) { return mi_new(n); }
void* operator new(std::size_t n, const std::nothrow_t&) noexcept { return mi_new_nothrow(n); }
void* operator new[](std::size_t n, const std::nothrow_t&) noexcept { return mi_new_nothrow(n); }
void* operator new(std::size_t n, std::align_val_t a) { return mi_new_aligned(n, static_cast<std::size_t>(a)); }
void* operator new[](std::size_t n, std::align_val_t a) { return mi_new_aligned(n, static_cast<std::size_t>(a)); }
void* operator new(std::size_t n, std::align_val_t a, const std::nothrow_t&) noexcept {
    return mi_new_aligned_nothrow(n, static_cast<std::size_t>(a));
}
void* operator new[](std::size_t n, std::align_val_t a, const std::nothrow_t&) noexcept {
    return mi_new_aligned_nothrow(n, static_cast<std::size_t>(a));
}
void operator delete(void* p) noexcept { mi_free(p); }
void operator delete[](void* p) noexcept { mi_free(p); }
void operator delete(void* p, const std::nothrow_t&) noexcept { mi_free(p); }
void operator delete[](void* p, const std::nothrow_t&) noexcept { mi_free(p); }
void operator delete(void* p, std::size_t n) noexcept { mi_free_size(p, n); }
void operator delete[](void* p, std::size_t n) noexcept { mi_free_size(p, n); }
void operator delete(void* p, std::align_val_t a) noexcept { mi_free_aligned(p, static_cast<std::size_t>(a)); }
void operator delete[](void* p, std::align_val_t a) noexcept { mi_free_aligned(p, static_cast<std::size_t>(a)); }
void operator delete(void* p, std::size_t n, std::align_val_t a) noexcept {
    mi_free_size_aligned(p, n, static_cast<std::size_t>(a));
}
void operator delete[](void* p, std::size_t n, std::align_val_t a) noexcept {
    mi_free_size_aligned(p, n, static_cast<std::size_t>(a));
}
#endif
