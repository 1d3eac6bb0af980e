// Border: the frame drawn round a panel: its type, width in pixels and which sides have it.
#pragma once

// sides is a mask: 1 left, 2 right, 4 bottom, 8 top. Type 0 is a plain line in the palette's
// darker shade; type 1 is raised.
class Border {
public:
    Border() = default;
    Border(int type, int size, unsigned sides) : type_(type), size_(size), sides_(sides) {}
    int getType() const { return type_; }
    int getSize() const { return size_; }
    unsigned getSides() const { return sides_; }
    bool operator==(const Border& o) const {
        return type_ == o.type_ && size_ == o.size_ && sides_ == o.sides_;
    }

private:
    int type_ = 0;
    int size_ = 0;
    unsigned sides_ = 15;
};
