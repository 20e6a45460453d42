/** @file
 * Interned BGP communities for programs in C, and for languages that call C.
 *
 *   zobgp_tables* tables;
 *   const zobgp_list* list;
 *   if (zobgp_tables_new(&tables) || zobgp_read(tables, ZOBGP_STANDARD, octets, 8, &list))
 *     die(zobgp_message());
 *   zobgp_list_text(list, text, sizeof text, &length);     // 65000:100 NO_EXPORT
 *   zobgp_list_release(list);
 *   zobgp_tables_free(tables);
 *
 * 1. Lists of one `zobgp_tables` with the same communities are one object: compare the pointers.
 * 2. A list stays as long as somebody holds it, also when its tables are gone. What a function
 *    hands out in `const zobgp_list**` or `zobgp_lists*` is held for the caller, who releases it;
 *    the lists of a `zobgp_path` are the reader's.
 * 3. A function that can fail returns a status, ZOBGP_OK when all went well, and changes none of
 *    its results otherwise. `zobgp_message` says more. Nothing that is read, from a peer or a
 *    file, ends the process.
 * 4. Texts and octets go to the caller's room. `*length` gets what they take, without the NUL that
 *    ends a text; ZOBGP_ROOM says that this is more than there is, and nothing was written then. So
 *    a call with room 0 asks for the length. `length` may be null.
 *
 * Threads: tables and lists may be used by all at once; a reader belongs to one at a time. It has
 * threads of its own, which a child of `fork` lacks: there it can neither be used nor closed.
 * This interface only grows: what is here keeps its meaning and its layout.
 */
#ifndef ZOBGP_H
#define ZOBGP_H

#include <stddef.h>
#include <stdint.h>

#ifdef __GNUC__
#define ZOBGP_API __attribute__((visibility("default")))
#else
#define ZOBGP_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/** What became of a call. */
typedef enum zobgp_status {
  ZOBGP_OK = 0,        /**< the results are there */
  ZOBGP_END = 1,       /**< no more paths */
  ZOBGP_ROOM = 2,      /**< the room is too small */
  ZOBGP_MALFORMED = 3, /**< what a peer sent is no such list, or path */
  ZOBGP_TEXT = 4,      /**< a text is not of communities, or of another type's */
  ZOBGP_FILE = 5,      /**< a file cannot be opened, or not be read on */
  ZOBGP_ARGUMENT = 6,  /**< null, or a number that is none of the type's */
  ZOBGP_MEMORY = 7     /**< there is none left */
} zobgp_status;

/** Path attributes, by their type codes. A community of them takes 4, 8, 20 and 12 octets. */
typedef enum zobgp_type {
  ZOBGP_STANDARD = 8,       /**< RFC 1997 */
  ZOBGP_EXTENDED = 16,      /**< RFC 4360 */
  ZOBGP_IPV6_EXTENDED = 25, /**< RFC 5701 */
  ZOBGP_LARGE = 32          /**< RFC 8092 */
} zobgp_type;

typedef struct zobgp_tables zobgp_tables;
typedef struct zobgp_list zobgp_list;
typedef struct zobgp_reader zobgp_reader;

/** The lists of a path, each null where it has none. */
typedef struct zobgp_lists {
  const zobgp_list* standard;
  const zobgp_list* extended;
  const zobgp_list* ipv6_extended;
  const zobgp_list* large;
} zobgp_lists;

/** `MAJOR.MINOR.PATCH`. */
ZOBGP_API const char* zobgp_version(void);

/** Why the last call of this thread that failed did so: one line, valid until the thread's next
 * call. Never null. */
ZOBGP_API const char* zobgp_message(void);

/* -- Tables ----------------------------------------------------------------------------------- */

/** New tables, without a list. */
ZOBGP_API zobgp_status zobgp_tables_new(zobgp_tables** tables);
/** Ends tables; null is none. Lists that somebody holds stay, and readers go on. */
ZOBGP_API void zobgp_tables_free(zobgp_tables* tables);

/** The list in an attribute's value, without its header. ZOBGP_MALFORMED when it is none. */
ZOBGP_API zobgp_status zobgp_read(const zobgp_tables* tables, zobgp_type type, const uint8_t* value,
                                  size_t size, const zobgp_list** list);

/** All lists in the path attributes of an UPDATE, as a peer sent them: headers and values, one
 * behind the other. ZOBGP_MALFORMED when one of the lists is, or its flags are, or the octets end
 * inside an attribute: the message says what, and `lists` gets those that could be read
 * nevertheless (RFC 7606: a speaker withdraws the route). */
ZOBGP_API zobgp_status zobgp_read_all(const zobgp_tables* tables, const uint8_t* attributes,
                                      size_t size, zobgp_lists* lists);

/** The list of communities written in a text, with blanks or commas between them, in any form that
 * docs/text.md lists: `65000:100 no-export`. All are of one attribute, or it is ZOBGP_TEXT. No
 * community at all is null; more than an attribute has room for are ZOBGP_MALFORMED. */
ZOBGP_API zobgp_status zobgp_parse(const zobgp_tables* tables, zobgp_type type, const char* text,
                                   const zobgp_list** list);

/* -- Lists ------------------------------------------------------------------------------------ */

/** Holds a list once more; null is none. */
ZOBGP_API void zobgp_list_hold(const zobgp_list* list);
/** Gives up what `zobgp_list_hold`, or the function that handed the list out, held. Null is none.
 */
ZOBGP_API void zobgp_list_release(const zobgp_list* list);
/** Releases all four, which are null then. */
ZOBGP_API void zobgp_lists_release(zobgp_lists* lists);

/** REQUIRES: no null. */
ZOBGP_API zobgp_type zobgp_list_type(const zobgp_list* list);
/** How many communities there are: sorted, none twice. REQUIRES: no null. */
ZOBGP_API size_t zobgp_list_size(const zobgp_list* list);
/** The communities, in the order of the list, as an attribute has them. */
ZOBGP_API zobgp_status zobgp_list_octets(const zobgp_list* list, uint8_t* octets, size_t room,
                                         size_t* length);
/** Their canonical texts, with a blank between them. */
ZOBGP_API zobgp_status zobgp_list_text(const zobgp_list* list, char* text, size_t room,
                                       size_t* length);

/* -- Single communities ----------------------------------------------------------------------- */

/** The canonical text of a community: one for each value. */
ZOBGP_API zobgp_status zobgp_text(zobgp_type type, const uint8_t* octets, size_t size, char* text,
                                  size_t room, size_t* length);
/** The way back, from any form that docs/text.md lists. `octets` has room for 20. */
ZOBGP_API zobgp_status zobgp_value(const char* text, zobgp_type* type, uint8_t* octets,
                                   size_t* length);

/* -- Files ------------------------------------------------------------------------------------ */

/** A path of an MRT file (RFC 6396): an entry of a table, or an UPDATE. Texts are valid until the
 * reader's next call; lists are held by the reader until then. */
typedef struct zobgp_path {
  uint32_t size;         /**< of this struct in the library that fills it; a newer one has more */
  uint32_t seconds;      /**< since 1970, UTC */
  uint32_t microseconds; /**< 0 where the file does not say */
  uint32_t peer_as;
  const char* peer;      /**< its address; "-" where the file does not say */
  const char* prefixes;  /**< that it announces, parted by ", "; empty without any */
  const char* withdrawn; /**< that the message takes back */
  const char* as_path;   /**< `64500 64501 {64502,64503}` */
  const char* next_hop;  /**< an address, or "-" */
  int64_t origin_as;     /**< the last AS of the path; -1 when there is none, or a set */
  uint64_t record;       /**< number of the MRT record, from 1 */
  zobgp_lists lists;
  /** What is wrong with the values of attributes that are lists, and where the attributes do not
   * fit; "; " between them. Empty when nothing is. */
  const char* malformed;
  /** Whose flags say that a list is not optional, or not transitive (RFC 7606, section 3 c: a
   * speaker withdraws the route). The list is there nevertheless. Empty when all are right. */
  const char* wrong_flags;
} zobgp_path;

/** Opens a file, plain or as gzip, bzip2, xz or zstd made it; `-` is standard input. Any
 * number of readers may share tables. Where the library was built without the reader, ZOBGP_FILE.
 */
ZOBGP_API zobgp_status zobgp_reader_open(const zobgp_tables* tables, const char* file,
                                         zobgp_reader** reader);
/** Ends a reader, with its path and texts; null is none. */
ZOBGP_API void zobgp_reader_close(zobgp_reader* reader);
/** The next path, in a struct of the reader's. ZOBGP_END behind the last; ZOBGP_FILE where the file
 * cannot be read on, after all paths in front of it. */
ZOBGP_API zobgp_status zobgp_reader_next(zobgp_reader* reader, const zobgp_path** path);

#ifdef __cplusplus
}
#endif

#endif
