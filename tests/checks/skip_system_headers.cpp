// A plugin for clang-tidy: its checks see only what is declared outside the headers of the system. Its findings there
// are dropped anyway, but looking for them takes most of its time, above all with <windows.h>.
#include <clang/AST/ASTConsumer.h>
#include <clang/AST/ASTContext.h>
#include <clang/Frontend/CompilerInstance.h>
#include <clang/Frontend/FrontendAction.h>
#include <clang/Frontend/FrontendPluginRegistry.h>

#include <memory>
#include <string>
#include <vector>

namespace {

class OwnDeclarations : public clang::ASTConsumer {
  public:
    void HandleTranslationUnit(clang::ASTContext& context) override {
        const clang::SourceManager& sources = context.getSourceManager();
        std::vector<clang::Decl*> own;
        for (clang::Decl* declaration : context.getTranslationUnitDecl()->decls()) {
            if (!sources.isInSystemHeader(declaration->getLocation())) {
                own.push_back(declaration);
            }
        }
        context.setTraversalScope(own);
    }
};

class SkipSystemHeaders : public clang::PluginASTAction {
  public:
    std::unique_ptr<clang::ASTConsumer> CreateASTConsumer(clang::CompilerInstance& /*compiler*/,
                                                          llvm::StringRef /*file*/) override {
        return std::make_unique<OwnDeclarations>();
    }
    bool ParseArgs(const clang::CompilerInstance& /*compiler*/,
                   const std::vector<std::string>& /*arguments*/) override {
        return true;
    }
    ActionType getActionType() override { return AddBeforeMainAction; }
};

const clang::FrontendPluginRegistry::Add<SkipSystemHeaders> registration("skip-system-headers",
                                                                         "Hides the system's declarations");

}  // namespace
