#pragma once

class QCoreApplication;

namespace lumetra {

// The user's language for the panel app's texts and the pictures it draws; the terminal mode
// keeps English, since scripts read its lines. Installed catalogues first, then the build tree's.
void installTranslations(QCoreApplication& app);

} // namespace lumetra
