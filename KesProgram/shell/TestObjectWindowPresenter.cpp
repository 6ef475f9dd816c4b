#include <KesProgram/shell/TestObjectWindowPresenter.h>

#include <KesCommonView/ReadOnlySwitchableContainerPresenter.h>
#include <KesCommonView/UpdateViewGuard.h>
#include <KesCommonView/WindowView.h>
#include <KesProgram/text/TreePresentersLocalization.h>
#include <KesTreeManager/NodeTreeContentPresenter.h>

namespace KesProgram {

class TestObjectWindowPresenter::Impl {
public:
    Impl(TestObjectWindowPresenter& window, KesTree::Node* testObject) : _window(window), _tree(testObject)
    {
        _container.add(_tree.getView());
    }

    void fillView()
    {
        auto& view = _window._getView();
        view.setTitle(KesTree::TreePresentersLocalization::testObjectWindowTitle());
        view.setContent(*_container.getView());
    }

    void setIsReadOnly(bool readOnly)
    {
        _guard.safeBeginUpdateView([this, readOnly] { _container.setIsReadOnly(readOnly); });
    }

private:
    TestObjectWindowPresenter& _window;
    Kes::ReadOnlySwitchableContainerPresenter _container;
    KesTree::NodeTreeContentPresenter _tree;
    Kes::UpdateViewGuard _guard;
};

TestObjectWindowPresenter::TestObjectWindowPresenter(KesTree::Node* testObject)
    : _impl(std::make_unique<Impl>(*this, testObject))
{
    _getView();
}

TestObjectWindowPresenter::~TestObjectWindowPresenter() = default;

void TestObjectWindowPresenter::setIsReadOnly(bool readOnly)
{
    _impl->setIsReadOnly(readOnly);
}

std::unique_ptr<Kes::IWindowView> TestObjectWindowPresenter::_createDefaultView()
{
    return std::make_unique<Kes::WindowView>();
}

void TestObjectWindowPresenter::_onViewInited()
{
    _impl->fillView();
}

} // namespace KesProgram
