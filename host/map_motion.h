// MapMotion: the steps of one moving picture of a map. All items that show it share it, so that it moves once for all
// of them. Thread: the user interface's.
#pragma once

#include <brindle/widgets/animation_update_controller.h>
#include <brindle/widgets/animation_update_target.h>
#include <brindle/widgets/button.h>

#include <functional>
#include <string>
#include <vector>

namespace brindle::host {

class MapItem;

class MapMotion final : public CAnimationUpdateTarget {
  public:
    static constexpr unsigned int kShortest = 20;  // milliseconds of a frame, whatever the file says

    // `moved` is called for each item that shows another frame.
    MapMotion(std::string file, std::function<void(const MapItem&)> moved);

    const std::string& File() const noexcept { return m_file; }
    // An item one of whose pictures is this one; borrowed.
    void Add(const MapItem& item, OV::Button::ImageTypeEnum type);
    void DoUpdate(unsigned int now, std::uint64_t& nextDue) override;

  private:
    std::string m_file;
    std::function<void(const MapItem&)> m_moved;
    std::vector<const MapItem*> m_items;
    OV::Button::ImageTypeEnum m_type = OV::Button::ImageNormal;  // of the first item
};

// Updates the moving pictures of the process that are due. Returns for how many milliseconds nothing more is.
unsigned int MoveWhatIsDue();

}  // namespace brindle::host
