#pragma once

#include "ModelScene.h"
#include "RealHome.h"

#include <atomic>
#include <gtest/gtest.h>
#include <memory>
#include <string>

namespace orbel::test {

/// A home that stands for the whole disk, with two films of the same size in it; how often its model looks
/// for what commands free is counted.
struct HomeWithFilms : testing::Test {
    HomeWithFilms() {
        useRealHome(scene.environment, home.path());
        scene.environment.dataVolumePath = home.path();
        scene.environment.systemPlaces = [looks = looks](const std::string&, const FileTree&,
                                                         const ScanCancellation&) {
            ++*looks;
            return std::vector<SystemPlace>();
        };
        film = home.file("Videos/a.mkv", std::size_t{200'000});
        copy = home.file("Videos/b.mkv", std::size_t{200'000});
    }
    AppModel& app() { return scene.model(); }
    NodeIndex node(const std::string& path) {
        return app().scan()->tree()->index(path, PathCanonicalizer::shared()).value();
    }
    /// Of the home as it is, without the model.
    ScanResult scanned() const {
        return scene.environment.scan(home.path(), {}, [](const ScanProgress&) {}, {});
    }

    TemporaryFolder home;
    ModelScene scene;
    std::shared_ptr<std::atomic<int>> looks = std::make_shared<std::atomic<int>>(0);
    std::string film;
    std::string copy;
};

} // namespace orbel::test
