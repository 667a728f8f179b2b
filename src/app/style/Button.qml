PushButton {}
