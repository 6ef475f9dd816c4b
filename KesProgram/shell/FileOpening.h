#pragma once

#include <KesCommon/Export.h>

#include <string>

namespace KesProgram {

class ArchiveManagerPresenter;

/// Opens the file that a program was started with, for its `openFile`. GUI thread.
class KES_EXPORT FileOpening {
public:
    /// As `ArchiveManagerPresenter::open`, with its questions and messages; but when the present document has
    /// never been touched, the user is not asked whether to save it.
    static void open(ArchiveManagerPresenter& presenter, const std::string& fileName, bool isUntouched);
};

} // namespace KesProgram
