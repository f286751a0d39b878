#include "brindle/behaviour/menu_loader.h"

MenuLoader::MenuLoader() noexcept = default;
MenuLoader::MenuLoader(const MenuLoader&) noexcept = default;
MenuLoader& MenuLoader::operator=(const MenuLoader&) noexcept = default;
MenuLoader::~MenuLoader() = default;
