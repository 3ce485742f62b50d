#include "searchmodes/match_t.h"

#include "index/fs_item.h"

namespace {

/// The finaliser of splitmix64 (Steele, Lea, Flood: Fast splittable pseudorandom number
/// generators).
uint64_t mix(uint64_t x) {
    x += 0x9E3779B97F4A7C15;
    x = (x ^ (x >> 30)) * 0xBF58476D1CE4E5B9;
    x = (x ^ (x >> 27)) * 0x94D049BB133111EB;
    return x ^ (x >> 31);
}

uint64_t combine(uint64_t hash, const void* pointer) {
    return mix(hash ^ mix(reinterpret_cast<uint64_t>(pointer)));
}

}  // namespace

uint64_t fingerprintOf(const match_t& match) {
    const fs_item_t* item = match.item;
    if (!item) return 0;
    uint64_t hash = combine(0x9AE16A3B2F90404F, item->name);
    for (const fs_item_t* ancestor = item->parent; ancestor; ancestor = ancestor->parent)
        hash = combine(combine(hash, ancestor), ancestor->name);
    if (const fs_item_metadata* data = item->metadata) {
        const uint64_t fields[] = {static_cast<uint64_t>(data->mtime),
                                   static_cast<uint64_t>(data->ctime),
                                   static_cast<uint64_t>(data->btime),
                                   static_cast<uint64_t>(data->atime),
                                   data->uid,
                                   data->gid,
                                   data->mode,
                                   data->size,
                                   static_cast<uint64_t>(data->nlink)};
        for (const uint64_t field : fields) hash = mix(hash ^ field);
    }
    return hash;
}
