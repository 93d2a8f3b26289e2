#pragma once

#include "apps/view/options.h"
#include "apps/view/picture_file.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace pavane
{

class ABWindow;

/// What is drawn without a window.
struct BatchJob {
    PictureJob picture;
    std::string caption;  ///< of the printed page, unless the options have another
    std::function<std::unique_ptr<ABWindow>()> newWindow;  ///< printed in the picture's place
};

/// Writes to standard output; 0, and said in `error`, when that fails.
int printText(const std::string& text, std::string& error);
/// Lines for the user on standard error.
void printNotes(const std::vector<std::string>& notes);
/// "key value unit" and a line end; without the unit when it is empty.
std::string statLine(const char* key, double value, int digits, std::string_view unit);

/// Writes and prints the pictures, or prints the table, that the options ask for, each as the job
/// draws it, which is made when the toolkit has been started for it and ends before that does; so
/// all input has to be read before. Non-zero on success; else 0 and one line in `error`.
int writePictures(char** argv, const ViewOptions& options, const std::function<BatchJob()>& newJob,
                  std::string& error);

}  // namespace pavane
