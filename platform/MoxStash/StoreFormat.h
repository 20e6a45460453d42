// What a store file holds, octet by octet.
//
//    offset
//     0   magic        89 5A 53 54 0D 0A 1A 0A: not text, and damaged by who takes it for text
//     8   byteOrder    01020304 in hexadecimal, in the byte order of all that follows
//    12   version      1
//    14   wordSize     8: octets of a reference; not those of an address, which no file holds
//    16   length       of the whole file
//    24   checksum     FNV-1a, 64 bits, of the whole file with this field zero
//    32   roots        where the array of StoredRoot stands, and how many there are
//    48   notes        the same for StoredNote
//    64   records and arrays in the order of being written, each at a multiple of 8, zeros between
//     :   the roots; the notes
//
// References are offsets from the start of the file. Fields have the same widths and places on
// every word size, so 32-bit and 64-bit processes read each other's files. A file of the other byte
// order is refused, not converted: it is made to be restored on the machine that wrote it.
#pragma once

#include <initializer_list>

#include "MoxStash/StoreManager.h"

namespace MoxStash {

struct StoredArray {
  StoreReference begin;
  U64 count;
};

struct StoreHeader {
  static constexpr U8 magicOctets[8] = {0x89, 'Z', 'S', 'T', '\r', '\n', 0x1A, '\n'};
  static constexpr U32 byteOrderMark = 0x01020304;
  static constexpr U16 versionNumber = 1;

  U8 magic[8];
  U32 byteOrder;
  U16 version;
  U16 wordSize;
  U64 length;
  U64 checksum;
  StoredArray roots;
  StoredArray notes;
};
static_assert(sizeof(StoreHeader) == 64);

/// Where every record, array and note starts: at a multiple of this.
inline constexpr U32 storeAlignment = 8;

/// The checksum that belongs into the header of a file of these pieces, whatever it has there.
U64 storeChecksum(StoreHeader header, std::initializer_list<std::string_view> rest);

/// What kind a record is of that no other refers to; what the numbers mean is its users' business.
using StoredKind = U32;

/// The bit of kinds whose record starts with a StoredExtent: that of elements of its own, which no
/// other root's record has. Without that, a small file could hold any number of long lists.
inline constexpr StoredKind storedKindHasExtent = 1u << 31;

/// From the first octet to the one behind the last.
struct StoredExtent {
  StoreReference begin, end;
};

/// An object that was added to a store by its own right.
struct StoredRoot {
  StoreReference reference;
  U64 figure;  ///< of the writer's, for instance how many paths hold the object
  StoredKind kind;
  U32 unused;
};

/// Octets under a name.
struct StoredNote {
  StoredArray name;
  StoredArray octets;
};

}  // namespace MoxStash
