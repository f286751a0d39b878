// Loads a skin, changes a colour and a border, and writes it back. usage: skin_edit SKIN.xml
#include <brindle/brindle.h>

#include <iostream>

int main(int count, char** arguments) {
    if (count < 2) return std::cerr << "usage: skin_edit SKIN.xml\n", 2;
    // A skin that cannot be read gives the built-in one; whoever writes it back asks first, or the file is lost.
    XMLReader reader;
    brindle::Result read;
    if (!reader.LoadPositioned(arguments[1], read))
        return std::cerr << "skin_edit: " << arguments[1] << ": " << read.text << "\n", 1;
    OVSkin skin;
    if (!skin.LoadFromFile(arguments[1]))
        return std::cerr << "skin_edit: " << arguments[1] << ": this is no skin\n", 1;

    int border = 0;
    skin.GetExactProp("pressed", "button", "bordersize", border);  // from "default" where "pressed" has none
    skin.SetExactProp("pressed", "button", "bordersize", border + 1);
    skin.SetExactProp("pressed", "button", "bordercolour", 0x0000FFUL);  // 0x00BBGGRR: red

    // The text is in the library's code page; files are UTF-8. The file is written whole or not at all.
    const brindle::Result written =
        brindle::WriteHostFile(arguments[1], brindle::TextToSystem(skin.GetXML().view()));
    if (!written.ok()) return std::cerr << "skin_edit: " << written.text << "\n", 1;
    std::cout << "the border of a pressed button is now " << border + 1 << " wide and red\n";
}
