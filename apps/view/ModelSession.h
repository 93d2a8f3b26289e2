#pragma once

#include "pavane/tables/components/EditedComponents.h"

#include <string>
#include <vector>

namespace pavane
{

/// The components over a map: where they came from and where they were saved.
class ModelSession
{
public:
    /// Reads a text of components, or the table of components of a FITS map; the content decides.
    /// `notes` gets what the user should know. 0 on failure: `error` is one line with the file's
    /// name, and what was there stays.
    int open(const std::string& file, std::vector<std::string>& notes, std::string& error);
    /// Reads a text as `open` does, as what was not saved yet of `file`; "": of a new list.
    int openCopy(const std::string& copy, const std::string& file, std::string& error);
    /// An empty list without a file.
    void begin();
    /// The list is gone, whether it was saved or not.
    void end();

    int isOpen() const { return isOpen_; }
    int isModified() const { return isOpen_ && components_.isModified(); }
    EditedComponents& components() { return components_; }
    const EditedComponents& components() const { return components_; }
    /// The text that Save writes; empty for none yet.
    const std::string& file() const { return file_; }
    /// Where the list came from, a map too; empty for a new one.
    const std::string& source() const { return source_; }
    /// "model.txt", or "a new list".
    std::string name() const;

    /// What saving would lose; empty when the user has agreed to just that before.
    std::vector<std::string> newLosses() const;
    /// Writes the text; what it loses counts as agreed. 0 on failure, with `error` as above.
    int save(const std::string& file, std::string& error);

private:
    EditedComponents components_;
    std::string file_;
    std::string source_;
    std::vector<std::string> agreedLosses_;
    int isOpen_ = 0;
};

}  // namespace pavane
