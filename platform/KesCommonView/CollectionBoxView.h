#pragma once

#include <KesCommonView/IView.h>

#include <gtkmm/box.h>

#include <cstddef>

namespace Kes {

/// The views of a collection's items, in order. They are placed, not owned. GUI thread.
class KES_EXPORT ICollectionView : public IView {
public:
    /// Shows the view before the one that is at `index` now; an index past the end appends. A view that is
    /// not a widget is ignored.
    virtual void insertView(std::size_t index, IView* view) = 0;
    /// The view, which lives on, is taken out; one that is not in here is ignored.
    virtual void removeView(IView* view) = 0;
};

/// Items in a column, each as high as it needs, or in a row, each as wide as it needs. It does not scroll.
/// GUI thread.
class KES_EXPORT CollectionBoxView : public Gtk::Box, public ICollectionView {
public:
    explicit CollectionBoxView(Gtk::Orientation orientation = Gtk::ORIENTATION_VERTICAL);

    void insertView(std::size_t index, IView* view) override;
    void removeView(IView* view) override;
};

} // namespace Kes
