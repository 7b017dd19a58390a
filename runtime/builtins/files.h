#pragma once
// Text files, binary files, and the folders in which they stand. Names are relative: the game's save folder, then the files that were
// packed with it.
#include "runtime/builtins/builtin.h"

namespace arena::script {

BUILTIN(async_result, Any(), "", "What arrived, in an event Async_N: a struct that nobody can change; undefined elsewhere.");

BUILTIN(binary_file_change, BinaryFileNumber(SaveName), "name", "Opens a file for reading and writing; -1 when there is none.");
BUILTIN(binary_file_close, Flag(BinaryFile), "file", "Ends the file, saves what was written, and says whether it can be saved.");
BUILTIN(binary_file_create, BinaryFileNumber(SaveName), "name", "Opens a new, empty file for writing.");
BUILTIN(binary_file_get_position, Number(BinaryFile), "file", "The place of the next byte, from 0.");
BUILTIN(binary_file_open, BinaryFileNumber(SaveName), "name", "Opens a file for reading; -1 when there is none.");
BUILTIN(binary_file_read_byte, Whole(BinaryFile), "file", "The next byte, from 0 to 255; -1 behind the last.");
BUILTIN(binary_file_set_position, void(BinaryFile, Number), "file, position", "Goes to a place, from 0 to the file's size.");
BUILTIN(binary_file_size, Number(BinaryFile), "file", "How many bytes the file has.");
BUILTIN(binary_file_write_byte, void(BinaryFile, In<Whole, 0, 255>), "file, byte", "Writes the next byte.");

BUILTIN(file_copy, Flag(SaveName, SaveName), "from, to",
        "Copies a file, also one that was packed; false when there is none or nothing can be written.");
BUILTIN(file_delete, Flag(SaveName), "name", "Deletes a file of the save folder; false when there is none or nothing can be written.");
BUILTIN(file_exists, Flag(SaveName), "name", "Whether there is such a file.");
BUILTIN(file_find_first, Any(Text), "pattern",
        "The name of the first file that fits: * stands for any characters of the last part, ? for one; undefined of none.");
BUILTIN(file_find_next, Any(Text, Text), "pattern, name", "The name after another, in the order of their bytes; undefined after the last.");
BUILTIN(file_get_attributes, Whole(SaveName), "name",
        "1 for what cannot be written, 2 hidden, 4 a folder, 8 packed, or their sum; -1 of nothing.");
BUILTIN(file_get_time, Number(SaveName), "name",
        "When the file was last written: seconds since the year 1970 began; 0 of none and of packed ones.");
BUILTIN(file_rename, Flag(SaveName, SaveName), "from, to",
        "Gives a file another name; false when there is none or nothing can be written.");
BUILTIN(file_set_attributes, Flag(SaveName, In<Whole, 0, 3>), "name, attributes",
        "Changes the first two attributes, as file_get_attributes gives them.");
BUILTIN(file_size, Number(SaveName), "name", "How many bytes the file has; -1 when there is none.");

BUILTIN(folder_copy, Flag(SaveName, SaveName), "from, to",
        "Copies a folder with all in it; false when there is none or nothing can be written.");
BUILTIN(folder_create, Flag(SaveName), "name", "Makes a folder, and those around it; false when nothing can be written.");
BUILTIN(folder_delete, Flag(SaveName), "name", "Deletes a folder with all in it; false when there is none or nothing can be written.");
BUILTIN(folder_exists, Flag(SaveName), "name", "Whether there is such a folder.");
BUILTIN(folder_find_first, Any(Text), "pattern", "As file_find_first, for folders.");
BUILTIN(folder_find_next, Any(Text, Text), "pattern, name", "As file_find_next, for folders.");
BUILTIN(folder_rename, Flag(SaveName, SaveName), "from, to",
        "Gives a folder another name; false when there is none or nothing can be written.");

BUILTIN(save_set_begin, void(), "", "What is saved from here on is kept back until save_set_end.");
BUILTIN(save_set_end, Flag(), "",
        "Saves all that was kept back, as one: after a crash all of it is there, or nothing. False when nothing can be written.");
BUILTIN(save_wait, Flag(), "", "Waits until all that was saved is on the disk, and says whether it is.");

BUILTIN(text_file_append, TextFileNumber(SaveName), "name", "Opens a file for writing behind what it has; a new one when there is none.");
BUILTIN(text_file_close, Flag(TextFile), "file", "Ends the file, saves what was written, and says whether it can be saved.");
BUILTIN(text_file_create, TextFileNumber(SaveName), "name", "Opens a new, empty file for writing.");
BUILTIN(text_file_is_at_end, Flag(TextFile), "file", "Whether all was read.");
BUILTIN(text_file_open, TextFileNumber(SaveName), "name", "Opens a file for reading; -1 when there is none.");
BUILTIN(text_file_read_line, Text(TextFile), "file", "The rest of the line, without its end; behind the last line an empty text.");
BUILTIN(text_file_read_number, Number(TextFile), "file", "The next number of the line, behind blanks; 0 where there is none.");
BUILTIN(text_file_read_text, Text(TextFile), "file", "All that was not read yet.");
BUILTIN(text_file_write, void(TextFile, Any), "file, value", "Writes the value's text; a number so that it reads back exactly.");
BUILTIN(text_file_write_line, void(TextFile, Optional<Any>), "file, value", "Writes the value's text, if one is given, and ends the line.");

}  // namespace arena::script
