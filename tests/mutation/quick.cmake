# Included where faults are tried: Qt's headers, which take most of a source's time, are read once.
cmake_language(DEFER CALL target_precompile_headers ZentuKitObjects PRIVATE
  <QDebug> <QDialogButtonBox> <QFileSystemWatcher> <QMdiArea> <QMenuBar> <QTabBar> <QTextStream>
  <QTimer> <QToolBar> <QTreeWidget> <QVBoxLayout> <algorithm> <charconv> <functional> <memory>)
