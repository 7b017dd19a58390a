#pragma once
// Buffers: bytes that scripts write and read as numbers and texts; what else is done with bytes.
#include "runtime/builtins/builtin.h"

namespace arena::script {

BUILTIN(buffer_base64, Text(Buffer, Or<Number, 0>, Or<Number, -1>), "buffer, at, size",
        "Bytes as a text in base 64; a size of -1 takes all that follow.");
BUILTIN(buffer_compress, BufferNumber(Buffer, Or<Number, 0>, Or<Number, -1>), "buffer, at, size",
        "A new buffer with the bytes compressed by zlib.");
BUILTIN(buffer_copy, void(Buffer, Number, Number, Buffer, Number), "from, at, size, to, to_at",
        "Copies bytes into a buffer, which may be the same one; a size of -1 takes all that follow.");
BUILTIN(buffer_crc32, Number(Buffer, Or<Number, 0>, Or<Number, -1>), "buffer, at, size", "The checksum CRC-32 of bytes.");
BUILTIN(buffer_create, BufferNumber(Number, In<Whole, 0, 3>, Or<Whole, 1>), "size, kind, alignment",
        "Makes a buffer of zeroes that ends where it ends (kind 0), grows (1), goes on at its beginning (2), or is fixed and for single "
        "bytes (3). Numbers stand at multiples of the alignment.");
BUILTIN(buffer_decompress, BufferNumber(Buffer), "buffer", "A new buffer with what buffer_compress made smaller.");
BUILTIN(buffer_destroy, void(Buffer), "buffer", "Ends a buffer.");
BUILTIN(buffer_equals, Flag(Buffer, Buffer), "a, b", "Whether both have the same bytes.");
BUILTIN(buffer_exists, Flag(Whole), "handle", "Whether there is such a buffer.");
BUILTIN(buffer_fill, void(Buffer, Number, In<Whole, 0, 12>, Any, Number), "buffer, at, type, value, size",
        "Writes a value again and again, at multiples of the alignment, as long as it fits into so many bytes; -1 takes all that follow.");
BUILTIN(buffer_from_base64, BufferNumber(Text), "text", "A new buffer with the bytes that a text in base 64 stands for.");
BUILTIN(buffer_from_text, BufferNumber(Text), "text", "A new buffer with the bytes of a text.");
BUILTIN(buffer_get_alignment, Whole(Buffer), "buffer", "Its alignment.");
BUILTIN(buffer_get_kind, Whole(Buffer), "buffer", "Its kind, as buffer_create takes it.");
BUILTIN(buffer_get_position, Number(Buffer), "buffer", "Where is read and written next, from 0.");
BUILTIN(buffer_get_size, Number(Buffer), "buffer", "How many bytes there are.");
BUILTIN(buffer_load, BufferNumber(SaveName), "name", "A new buffer with the bytes of a file; -1 when there is none.");
BUILTIN(buffer_load_async, Number(SaveName), "name",
        "Begins to read a file and gives a number; the event Async_2 has it as id, and the new buffer, when all is there.");
BUILTIN(buffer_md5, Text(Buffer, Or<Number, 0>, Or<Number, -1>), "buffer, at, size", "The hash MD5 of bytes, in hexadecimal digits.");
BUILTIN(buffer_peek, Any(Buffer, Number, In<Whole, 0, 12>), "buffer, at, type", "The value at a place.");
BUILTIN(buffer_poke, void(Buffer, Number, In<Whole, 0, 12>, Any), "buffer, at, type, value", "Writes a value at a place.");
BUILTIN(buffer_read, Any(Buffer, In<Whole, 0, 12>), "buffer, type",
        "The next value: unsigned and signed numbers of 8 (types 0, 1), 16 (2, 3) and 32 bits (4, 5), int64 (6), numbers with a point of "
        "16, 32 and 64 bits (7, 8, 9), bool (10), a text up to its zero (11), all the rest as a text (12).");
BUILTIN(buffer_resize, void(Buffer, Number), "buffer, size", "Cuts the buffer, or makes it longer by zeroes.");
BUILTIN(buffer_save, Flag(Buffer, SaveName, Or<Number, 0>, Or<Number, -1>), "buffer, name, at, size",
        "Saves bytes as a file; false when nothing can be written.");
BUILTIN(buffer_save_async, Number(Buffer, SaveName, Or<Number, 0>, Or<Number, -1>), "buffer, name, at, size",
        "Begins to save bytes as a file and gives a number; the event Async_2 has it as id when they are on the disk.");
BUILTIN(buffer_set_position, void(Buffer, Number, Or<Whole, 0>), "buffer, position, from",
        "Where is read and written next, counted from the beginning (0), the place now (1) or the end (2).");
BUILTIN(buffer_sha1, Text(Buffer, Or<Number, 0>, Or<Number, -1>), "buffer, at, size", "The hash SHA-1 of bytes, in hexadecimal digits.");
BUILTIN(buffer_sha256, Text(Buffer, Or<Number, 0>, Or<Number, -1>), "buffer, at, size",
        "The hash SHA-256 of bytes, in hexadecimal digits.");
BUILTIN(buffer_slice, BufferNumber(Buffer, Number, Number), "buffer, at, size", "A new buffer with a copy of bytes.");
BUILTIN(buffer_text, Text(Buffer, Or<Number, 0>, Or<Number, -1>), "buffer, at, size", "Bytes as a text.");
BUILTIN(buffer_write, void(Buffer, In<Whole, 0, 12>, Any), "buffer, type, value",
        "Writes the next value, of a type as buffer_read takes it.");

BUILTIN(string_base64_decode, Text(Text), "text", "The text that a text in base 64 stands for.");
BUILTIN(string_base64_encode, Text(Text), "text", "The bytes of the text in base 64.");
BUILTIN(string_crc32, Number(Text), "text", "The checksum CRC-32 of the text's bytes.");
BUILTIN(string_md5, Text(Text), "text", "The hash MD5 of the text's bytes, in hexadecimal digits.");
BUILTIN(string_sha1, Text(Text), "text", "The hash SHA-1 of the text's bytes, in hexadecimal digits.");
BUILTIN(string_sha256, Text(Text), "text", "The hash SHA-256 of the text's bytes, in hexadecimal digits.");

}  // namespace arena::script
