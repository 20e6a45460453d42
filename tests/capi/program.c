/* A program in C on the interface for C. Usage: program FILE, the sample. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "zobgp.h"

static int failures = 0;
#define CHECK(condition)                                                                       \
  do {                                                                                         \
    if (!(condition)) {                                                                        \
      fprintf(stderr, "%s:%d: %s; %s\n", __FILE__, __LINE__, #condition, zobgp_message());     \
      ++failures;                                                                              \
    }                                                                                          \
  } while (0)

static const char* text_of(const zobgp_list* list) {
  static char text[4096];
  size_t length = 0, needed = 0;
  CHECK(zobgp_list_text(list, NULL, 0, &needed) == ZOBGP_ROOM);
  CHECK(zobgp_list_text(list, text, needed, &length) == ZOBGP_ROOM && length == needed);
  CHECK(zobgp_list_text(list, text, needed + 1, &length) == ZOBGP_OK && strlen(text) == length);
  return text;
}

static void lists(const zobgp_tables* tables) {
  /* Out of order, one twice; sorted; as text. */
  const uint8_t received[] = {0xff, 0xff, 0xff, 1, 0xfd, 0xe8, 0, 100, 0xff, 0xff, 0xff, 1};
  const uint8_t sorted[] = {0xfd, 0xe8, 0, 100, 0xff, 0xff, 0xff, 1};
  const zobgp_list *one = NULL, *same = NULL, *typed = NULL, *other = NULL;
  uint8_t octets[64];
  size_t length = 0;
  CHECK(zobgp_read(tables, ZOBGP_STANDARD, received, sizeof received, &one) == ZOBGP_OK);
  CHECK(zobgp_read(tables, ZOBGP_STANDARD, sorted, sizeof sorted, &same) == ZOBGP_OK && one == same);
  CHECK(zobgp_parse(tables, ZOBGP_STANDARD, "no-export, 65000:100", &typed) == ZOBGP_OK && typed == one);
  CHECK(zobgp_list_type(one) == ZOBGP_STANDARD && zobgp_list_size(one) == 2);
  CHECK(!strcmp(text_of(one), "65000:100 NO_EXPORT"));
  CHECK(zobgp_list_octets(one, octets, sizeof octets, &length) == ZOBGP_OK && length == 8 &&
        !memcmp(octets, sorted, 8));
  CHECK(zobgp_list_octets(one, octets, 7, &length) == ZOBGP_ROOM && length == 8);

  /* What fails leaves its result alone, and says why. */
  other = one;
  CHECK(zobgp_read(tables, ZOBGP_STANDARD, received, 7, &other) == ZOBGP_MALFORMED && other == one);
  CHECK(strstr(zobgp_message(), "offset 4: 3 octets"));
  CHECK(zobgp_read(tables, (zobgp_type)9, received, 8, &other) == ZOBGP_ARGUMENT && other == one);
  CHECK(zobgp_read(NULL, ZOBGP_STANDARD, received, 8, &other) == ZOBGP_ARGUMENT);
  CHECK(!strcmp(zobgp_message(), "tables: null"));
  CHECK(zobgp_parse(tables, ZOBGP_STANDARD, "65000:70000", &other) == ZOBGP_TEXT);
  CHECK(zobgp_parse(tables, ZOBGP_LARGE, "65000:1", &other) == ZOBGP_TEXT && other == one);
  CHECK(zobgp_parse(tables, ZOBGP_LARGE, "", &other) == ZOBGP_OK && !other);

  zobgp_list_release(same);
  zobgp_list_release(typed);
  zobgp_list_hold(one);
  zobgp_list_release(one);
  CHECK(!strcmp(text_of(one), "65000:100 NO_EXPORT"));
  zobgp_list_release(one);
}

static void updates(const zobgp_tables* tables) {
  const uint8_t repeated[] = {0xc0, 8, 4, 0, 1, 0, 1, 0xc0, 8, 4, 0, 1, 0, 2, 0xc0, 16, 3, 1, 2, 3};
  const uint8_t attributes[] = {0x40, 1, 1, 0,    0xc0, 8,    4,    0xfd, 0xe8, 0,    1,    0xc0, 16,
                                8,    0, 2, 0xfd, 0xe8, 0,    0,    0,    1,    0xc0, 32,   3,    1, 2, 3};
  zobgp_lists all = {0};
  CHECK(zobgp_read_all(tables, attributes, 22, &all) == ZOBGP_OK && !all.large && !all.ipv6_extended);
  CHECK(!strcmp(text_of(all.extended), "route-target-as2:65000:1"));
  CHECK(zobgp_list_type(all.extended) == ZOBGP_EXTENDED);
  zobgp_lists_release(&all);
  CHECK(!all.standard && !all.extended);
  CHECK(zobgp_read_all(tables, attributes, sizeof attributes, &all) == ZOBGP_MALFORMED);
  CHECK(all.standard && all.extended && !all.large);
  zobgp_lists_release(&all);
  CHECK(zobgp_read_all(tables, repeated, 14, &all) == ZOBGP_OK);
  zobgp_lists_release(&all);
  CHECK(zobgp_read_all(tables, repeated, sizeof repeated, &all) == ZOBGP_MALFORMED);
  CHECK(strstr(zobgp_message(), "offset 0: 3 octets")); /* not the harmless fault in front of it */
  zobgp_lists_release(&all);
}

static void values(void) {
  uint8_t octets[20];
  char text[128];
  size_t length = 0;
  zobgp_type type = ZOBGP_STANDARD;
  CHECK(zobgp_value("RT:65000:100", &type, octets, &length) == ZOBGP_OK);
  CHECK(type == ZOBGP_EXTENDED && length == 8);
  CHECK(zobgp_text(type, octets, length, text, sizeof text, &length) == ZOBGP_OK);
  CHECK(!strcmp(text, "route-target-as2:65000:100"));
  CHECK(zobgp_text(type, octets, 8, NULL, 99, &length) == ZOBGP_ARGUMENT && length == 26);
  CHECK(zobgp_text(type, octets, 4, text, sizeof text, &length) == ZOBGP_ARGUMENT);
  CHECK(zobgp_value("65000:x", &type, octets, &length) == ZOBGP_TEXT);
}

static void paths(const zobgp_tables* tables, const char* file) {
  zobgp_reader* reader = NULL;
  const zobgp_path* path = NULL;
  const zobgp_list* first = NULL;
  unsigned long count = 0, targets = 0, again = 0, from_peer = 0;
  zobgp_status status;
  char name[1001] = "";
  if (zobgp_reader_open(tables, file, &reader) != ZOBGP_OK) {
    CHECK(strstr(zobgp_message(), "without the reader"));
    return;
  }
  while ((status = zobgp_reader_next(reader, &path)) == ZOBGP_OK) {
    ++count;
    targets += path->lists.extended && strstr(text_of(path->lists.extended), "route-target");
    if (!first && path->lists.standard) zobgp_list_hold(first = path->lists.standard);
    again += first && path->lists.standard == first;
    from_peer += path->peer_as == 64600;
    CHECK(*path->prefixes && !*path->withdrawn && !*path->malformed && !*path->wrong_flags);
  }
  CHECK(status == ZOBGP_END && zobgp_reader_next(reader, &path) == ZOBGP_END);
  CHECK(count == 9723 && from_peer == 9721 && targets > 0 && again > 1); /* two are local */
  zobgp_reader_close(reader);
  CHECK(*text_of(first));
  zobgp_list_release(first);
  CHECK(zobgp_reader_open(tables, "/nonexistent", &reader) == ZOBGP_FILE);
  CHECK(strstr(zobgp_message(), "/nonexistent: No such file"));
  memset(name, '\n', sizeof name - 1); /* the message is one line, and keeps the reason */
  CHECK(zobgp_reader_open(tables, name, &reader) == ZOBGP_FILE);
  CHECK(strstr(zobgp_message(), "?: File name too long") && !strchr(zobgp_message(), '\n'));
  CHECK(zobgp_reader_open(tables, "README.md", &reader) == ZOBGP_OK);
  CHECK(zobgp_reader_next(reader, &path) == ZOBGP_FILE && strstr(zobgp_message(), "README.md: "));
  zobgp_reader_close(reader);

  zobgp_tables* own; /* a reader outlives its tables */
  CHECK(!zobgp_tables_new(&own) && !zobgp_reader_open(own, file, &reader));
  zobgp_tables_free(own);
  CHECK(!zobgp_reader_next(reader, &path) && *text_of(path->lists.standard));
  zobgp_reader_close(reader);
}

int main(int argc, char** argv) {
  zobgp_tables* tables = NULL;
  const zobgp_list* last = NULL;
  CHECK(zobgp_tables_new(&tables) == ZOBGP_OK);
  lists(tables);
  updates(tables);
  values();
  if (argc > 1) paths(tables, argv[1]);
  CHECK(zobgp_parse(tables, ZOBGP_LARGE, "65000:1:2", &last) == ZOBGP_OK);
  zobgp_tables_free(tables);
  zobgp_tables_free(NULL);
  CHECK(!strcmp(text_of(last), "65000:1:2")); /* it outlives its tables */
  zobgp_list_release(last);
  printf("libzobgp-c %s: %d failures\n", zobgp_version(), failures);
  return failures ? EXIT_FAILURE : EXIT_SUCCESS;
}
