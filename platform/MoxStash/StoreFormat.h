// The layout of a store file, octet by octet.
//
//    offset
//     0   magic        89 5A 53 54 0D 0A 1A 0A: not text, and damaged by a transfer as text
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
// References are offsets from the start of the file. Fields have the same widths and offsets on
// every word size, so 32-bit and 64-bit processes read each other's files. A file of the other byte
// order is refused, not converted: it is made to be restored on the machine that wrote it. The
// figures of all roots together are less than 2^64, so a reader may add them up.
#pragma once

#include <initializer_list>

#include "MoxStash/StoreManager.h"

namespace MoxStash {

/// `count` records or octets in a row.
struct StoredArray {
  StoreReference begin;
  U64 count;
};

/// The first 64 octets of a file.
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

/// The checksum of a file of these pieces. The one that `header` holds does not count.
U64 storeChecksum(StoreHeader header, std::initializer_list<std::string_view> rest);

/// The type of a root's record. The classes that can be stored choose the numbers.
using RecordType = U32;

/// The bit of record types that start with a StoredExtent: of elements that no other root has. A
/// small file could otherwise hold any number of long lists.
inline constexpr RecordType recordTypeHasExtent = 1u << 31;

/// From the first octet of an array to the one behind its last.
struct StoredExtent {
  StoreReference begin, end;
};

/// An object that was added to a store, not merely referred to by one that was.
struct StoredRoot {
  StoreReference reference;
  U64 figure;  ///< the writer's own, for instance how many paths hold the object
  RecordType type;
  U32 unused;
};

/// Octets under a name.
struct StoredNote {
  StoredArray name;
  StoredArray octets;
};

}  // namespace MoxStash
