#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "hosts/cli/Reports.h"
#include "supportsdk/platform/PhotoChooser.h"
#include "supportsdk/platform/Queues.h"

namespace supportsdk::host {

/// Reports that pictures are wanted, and hands over the files that are named then.
class HostPhotoChooser : public PhotoChooser {
 public:
    HostPhotoChooser(std::shared_ptr<Reports> reports, std::shared_ptr<MainQueue> queue)
        : reports_(std::move(reports)), queue_(std::move(queue)) {}

    void choose(const PhotoChooserOptions& options,
                std::function<void(std::vector<PhotoItem>)> completion) override;

    /// The person's choice, nothing included; a file that cannot be read stays among the others.
    /// False when nothing is asked for.
    bool pick(const std::vector<std::string>& files);

 private:
    const std::shared_ptr<Reports> reports_;
    const std::shared_ptr<MainQueue> queue_;
    std::function<void(std::vector<PhotoItem>)> completion_;
};

}  // namespace supportsdk::host
