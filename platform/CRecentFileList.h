#pragma once

#include "platform/CString.h"
#include "platform/Windows.h"

#include <vector>

class CCmdUI;

/// The files that were used last, the latest first, as a menu offers them. Where the list is kept
/// between runs is its heir's matter. User-interface thread.
class ZMR_GV_API CRecentFileList {
public:
    /// A list of `size` empty places. The menu numbers them from `start` + 1 and shows names with
    /// at most `display_length` characters, -1 for all of them; `section` and `entry_format`
    /// ("File%d") tell ReadList and WriteList where the names are kept.
    CRecentFileList(UINT start, LPCTSTR section, LPCTSTR entry_format, int size,
                    int display_length = kDisplayLength);
    virtual ~CRecentFileList();
    CRecentFileList(const CRecentFileList&) = delete;
    CRecentFileList& operator=(const CRecentFileList&) = delete;

    [[nodiscard]] int GetSize() const { return m_nSize; }
    /// `index` must be below the size.
    [[nodiscard]] CString& operator[](int index) { return m_arrNames[index]; }
    /// Puts the file, by its full name, in front; it is taken out of its former place, or else the
    /// last one falls off. Names that differ in the case of ASCII letters are one file's. Null and
    /// the empty text are ignored.
    virtual void Add(LPCTSTR path);
    /// Takes a name out; those behind it move up. An index outside the list is ignored.
    virtual void Remove(int index);
    /// The same with the place that holds this name, when there is one.
    void RemoveName(const CString& name);

    /// How the menu shows a name; see zmr::recent_file_text. FALSE for an empty place, and when
    /// there is no room for the last name unless that is asked for.
    BOOL GetDisplayName(CString& name, int index, LPCTSTR current_folder, int current_length,
                        BOOL at_least_name = TRUE) const;
    /// Puts the files in the place of the menu item that `state` is for, numbered, under its
    /// command and those behind it, leaving out empty places; with no file, the item's first text,
    /// disabled.
    virtual void UpdateMenu(CCmdUI* state);
    /// The index of file number `order`, counted from 0 without empty places, as the menu has them;
    /// -1 when there are not so many.
    [[nodiscard]] int IndexOfItem(int order) const;
    virtual void ReadList() = 0;
    virtual void WriteList() = 0;

    static constexpr int kDisplayLength = 30;

private:
    std::vector<CString> names_;

public:
    int m_nSize;
    CString* m_arrNames;  ///< m_nSize of them, empty ones behind the others when only Add was used.
    CString m_strSectionName;
    CString m_strEntryFormat;
    UINT m_nStart;
    int m_nMaxDisplayLength;
    CString m_strOriginal;  ///< The menu item's text before files took its place.
};
