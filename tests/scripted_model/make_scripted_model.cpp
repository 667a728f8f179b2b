// Writes a computed speech model: make_scripted_model FILE [AUDIO_LAYERS]

#include "scripted_model/scripted_model.h"

#include <cstdlib>
#include <exception>
#include <iostream>

int main(int argumentCount, char **arguments)
{
    if (argumentCount < 2) {
        std::cerr << "usage: make_scripted_model FILE [AUDIO_LAYERS]\n";
        return 2;
    }
    try {
        ScriptedModel model = ScriptedModel::demonstration();
        if (argumentCount > 2)
            model.audioLayers = std::atoi(arguments[2]);
        model.write(arguments[1]);
    } catch (const std::exception &error) {
        std::cerr << error.what() << "\n";
        return 1;
    }
    std::cout << "Wrote a computed model that recites a script and recognises nothing: " << arguments[1] << "\n";
    return 0;
}
