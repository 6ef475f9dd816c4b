#pragma once

#include <KesCommonView/IView.h>

#include <gtkmm/box.h>

#include <cstddef>

namespace Kes {

/// The views of a collection's items, in order. They are placed, not owned. GUI thread.
class KES_EXPORT ICollectionView : public IView {
public:
    /// A view that is not a widget is ignored.
    virtual void insertView(std::size_t index, IView* view) = 0;
    virtual void removeView(IView* view) = 0;
};

/// Items below each other. GUI thread.
class KES_EXPORT CollectionBoxView : public Gtk::Box, public ICollectionView {
public:
    explicit CollectionBoxView(Gtk::Orientation orientation = Gtk::ORIENTATION_VERTICAL);

    void insertView(std::size_t index, IView* view) override;
    void removeView(IView* view) override;
};

} // namespace Kes
