// The allocator and a few functions of the runtime, exported so that a caller who is linked to
// another runtime can hand memory and files over.
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "base/memory.h"
#include "kelvo.h"

void* KLVmalloc(size_t size) {
  return kelvo::allocate(size);
}

void* KLVrealloc(void* block, size_t size) {
  return kelvo::reallocate(block, size);
}

void KLVfree(void* block) {
  kelvo::release(block);
}

FILE* KLVfopen(const char* name, const char* mode) {
  return std::fopen(name, mode);
}

int KLVfclose(FILE* file) {
  return std::fclose(file);
}

int KLVfputs(const char* text, FILE* file) {
  return std::fputs(text, file);
}

int KLVputenv(char* setting) {
  return putenv(setting);
}

size_t KLVstrlen(const char* text) {
  return std::strlen(text);
}

char* KLVstrcpy(char* to, const char* from) {
  return std::strcpy(to, from);
}

void* KLVmemcpy(void* to, const void* from, size_t size) {
  return std::memcpy(to, from, size);
}

void KLVEgeneric_lock(volatile int* lock) {
  // The second look makes the loop leave only on a value that stays.
  while (*lock != 0 || *lock != 0) {
  }
  *lock = 1;
}

void KLVEgeneric_unlock(volatile int* lock) {
  *lock = 0;
}
